// The query dialect turned into backend SQL. A text is parsed into its parts; every literal
// becomes a placeholder with its value in `parameters`, so the SQL depends on the statement's
// shape alone. Names, placeholders, the row identity and case-insensitive text are spelled by
// the backend's SqlSyntax.
//
//   Select [Distinct] (* | name, ...) From source [Where expr] [Order By name [Asc|Desc], ...]
//   Delete [*] From table [Where expr]
//   expr: comparisons (= <> < > <= >= Like), Is [Not] Null, And, Or, Not, parentheses
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/backend.h"

namespace brindlewayProj::store::dialect {

enum class StatementKind { kSelect, kDelete };

struct ParsedStatement {
  StatementKind kind = StatementKind::kSelect;
  bool distinct = false;
  std::vector<std::string> columns;  // empty for `*`
  std::string source;                // the table or stored query named after From
  std::string where;                 // backend SQL of the condition; empty without one
  struct SortKey {
    std::string name;
    bool descending = false;
  };
  std::vector<SortKey> orderBy;      // the sort, first key first; empty without one
  std::vector<SqlValue> parameters;  // the literals, in placeholder order
  std::vector<std::string> names;    // every column name the text refers to
};

// How deep parentheses and Not may nest, counted together. The parser recurses for each
// level (a level of parentheses costs 0.4 to 0.6 KiB of stack optimised, 1.7 KiB under
// AddressSanitizer), so deeper text is refused before it can exhaust a small thread stack.
// SQLite's own parser gives up at about 90 levels of plain nesting anyway.
inline constexpr int kMaxNesting = 64;

// Parses a Select or Delete text. Anything outside the dialect, nesting deeper than
// kMaxNesting included, raises 3075 quoting the text from the clause that failed (3131 for
// the From clause).
ParsedStatement Parse(std::string_view text, const SqlSyntax& syntax);

// Parses what OpenRecordset takes: a Select text, or else the name of a table or stored query
// (bare, or whole in brackets), which reads as `Select * From name`.
ParsedStatement ParseRecordSource(std::string_view text, const SqlSyntax& syntax);

// The backend SQL of a parsed Select; `withRowId` puts the row identity in front as column 0.
// Text sorts without regard to case: a sort key gets the syntax's case-insensitive ordering
// unless `source` declares the column as no text (numbers and dates need none, and an index
// can then serve the sort).
std::string SelectSql(const ParsedStatement& statement, bool withRowId, const SqlSyntax& syntax,
                      const SourceInfo* source = nullptr);

// The backend SQL of a parsed Delete.
std::string DeleteSql(const ParsedStatement& statement, const SqlSyntax& syntax);

}  // namespace brindlewayProj::store::dialect
