// Fuzzes the query dialect (Parse, ParseRecordSource, SelectSql, DeleteSql) on SQLite's
// syntax. Any text is either refused with 3075 or 3131, or becomes SQL in which every literal
// is a bound placeholder (no quote outside names but the fixed ESCAPE '\' clause, no `;`, no
// comment), that reads from exactly the one source that was parsed, and that SQLite reads: on
// an empty store it fails only for the unknown source or one of SQLite's own size limits.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/fuzz_check.h"
#include "store/dialect.h"
#include "store/errors.h"
#include "store/sqlite/connection.h"

namespace brindlewayProj::store::dialect {
namespace {

using fuzz::Require;

// The SQL split into what lies outside quoted names and the names themselves, in order; in
// `outside` each name stands as one `"`.
struct SqlParts {
  std::string outside;
  std::vector<std::string> names;
};

SqlParts Split(const std::string& sql) {
  SqlParts parts;
  for (std::size_t i = 0; i < sql.size(); ++i) {
    if (sql[i] != '"') {
      parts.outside += sql[i];
      continue;
    }
    std::string name;
    for (++i;; ++i) {
      Require(i < sql.size(), "a quoted name is not closed");
      if (sql[i] == '"') {
        if (i + 1 < sql.size() && sql[i + 1] == '"') {
          name += '"';
          ++i;
          continue;
        }
        break;
      }
      name += sql[i];
    }
    parts.outside += '"';
    parts.names.push_back(std::move(name));
  }
  return parts;
}

void CheckSql(const std::string& sql, const ParsedStatement& statement) {
  SqlParts parts = Split(sql);
  std::string& outside = parts.outside;

  constexpr std::string_view kEscape = " ESCAPE '\\'";
  for (auto at = outside.find(kEscape); at != std::string::npos; at = outside.find(kEscape)) {
    outside.erase(at, kEscape.size());
  }
  Require(outside.find('\'') == std::string::npos, "a quote outside the ESCAPE clause");
  Require(outside.find(';') == std::string::npos, "a statement separator");
  Require(outside.find("--") == std::string::npos && outside.find("/*") == std::string::npos,
          "a comment");
  std::size_t placeholders = 0;
  for (char c : outside) placeholders += c == '?';
  Require(placeholders == statement.parameters.size(), "placeholders and values differ");

  // One source: FROM once, followed by one name and then the end, WHERE or ORDER BY.
  constexpr std::string_view kFrom = " FROM \"";
  const auto from = outside.find(kFrom);
  Require(from != std::string::npos && outside.find(" FROM ", from + 1) == std::string::npos,
          "not exactly one FROM");
  const std::string_view after = std::string_view(outside).substr(from + kFrom.size());
  Require(after.empty() || after.starts_with(" WHERE ") || after.starts_with(" ORDER BY "),
          "more than one source");
  std::size_t sourceIndex = 0;
  for (std::size_t i = 0; i < from; ++i) sourceIndex += outside[i] == '"';
  Require(parts.names[sourceIndex] == statement.source, "the source is not the parsed one");

  // SQLite reads a text up to its first NUL byte. No store holds a name with one, so the name
  // check before any statement is prepared refuses such texts; they are not SQLite's to read.
  if (sql.find('\0') != std::string::npos) return;
  static const std::shared_ptr<Connection> emptyStore = sqlite::Open(":memory:");
  try {
    emptyStore->Prepare(sql);
  } catch (const BackendError& failure) {
    const std::string_view message = failure.what();
    Require(message.starts_with("no such table") || message == "parser stack overflow" ||
                message.starts_with("Expression tree is too large") ||
                message == "too many SQL variables",
            "SQLite does not read the statement");
  }
}

void Check(const ParsedStatement& statement) {
  if (statement.kind == StatementKind::kDelete) {
    CheckSql(DeleteSql(statement, sqlite::Syntax()), statement);
  } else {
    CheckSql(SelectSql(statement, false, sqlite::Syntax()), statement);
    CheckSql(SelectSql(statement, true, sqlite::Syntax()), statement);
  }
}

template <class ParseFunction>
void Run(ParseFunction parse, std::string_view text) {
  try {
    Check(parse(text, sqlite::Syntax()));
  } catch (const platform::Error& failure) {
    fuzz::RequireNumber(failure, {errSyntax, errFromClause});
  }
}

}  // namespace
}  // namespace brindlewayProj::store::dialect

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace brindlewayProj::store::dialect;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  Run(Parse, text);
  Run(ParseRecordSource, text);
  return 0;
}
