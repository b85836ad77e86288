// The dialect's recursive-descent parser and its SQL emission.
#include "store/dialect.h"

#include <algorithm>
#include <cctype>

#include "platform/ascii.h"
#include "store/dialect_lexer.h"
#include "store/errors.h"

namespace brindlewayProj::store::dialect {
namespace {

// Words that are never a bare name, so that `Select Union From T` is a syntax error.
constexpr std::string_view kReserved[] = {
    "SELECT", "DISTINCT", "FROM", "WHERE",  "ORDER",  "BY",    "ASC",    "DESC",  "AND",   "OR",
    "NOT",    "LIKE",     "IS",   "NULL",   "TRUE",   "FALSE", "DELETE", "UNION", "ALL",   "INSERT",
    "INTO",   "UPDATE",   "SET",  "VALUES", "JOIN",   "ON",    "AS",     "IN",    "GROUP", "HAVING",
    "EXISTS", "BETWEEN",  "TOP",  "DROP",   "CREATE", "ALTER", "ESCAPE"};

bool IsReserved(const Token& token) {
  return std::any_of(std::begin(kReserved), std::end(kReserved),
                     [&](std::string_view word) { return IsKeyword(token, word); });
}

// A Like pattern's wildcards * and ? in the backend's % and _, with % _ \ taken literally.
std::string LikePattern(const std::string& pattern) {
  std::string out;
  out.reserve(pattern.size());
  for (char c : pattern) {
    if (c == '*') {
      out += '%';
    } else if (c == '?') {
      out += '_';
    } else {
      if (c == '%' || c == '_' || c == '\\') out += '\\';
      out += c;
    }
  }
  return out;
}

class Parser {
 public:
  Parser(std::string_view text, const SqlSyntax& syntax)
      : text_(text), syntax_(syntax), tokens_(Tokenize(text)) {}

  ParsedStatement Statement() {
    clauseStart_ = 0;
    if (Accept("SELECT")) {
      SelectList();
    } else if (Accept("DELETE")) {
      result_.kind = StatementKind::kDelete;
      AcceptSymbol("*");
    } else {
      Fail();
    }
    From();
    if (Accept("WHERE")) {
      clauseStart_ = Peek().offset;
      Expression(result_.where);
    }
    if (result_.kind == StatementKind::kSelect && Accept("ORDER")) {
      clauseStart_ = Peek().offset;
      Expect("BY");
      OrderBy();
    }
    AcceptSymbol(";");
    if (Peek().kind != TokenKind::kEnd) Fail();
    return std::move(result_);
  }

 private:
  const Token& Peek() const { return tokens_[position_]; }
  const Token& Next() { return tokens_[position_ < tokens_.size() - 1 ? position_++ : position_]; }

  [[noreturn]] void Fail() const {
    std::string_view offending = text_.substr(std::min(clauseStart_, text_.size()));
    while (!offending.empty() && std::isspace(static_cast<unsigned char>(offending.back()))) {
      offending.remove_suffix(1);
    }
    throw SyntaxError(std::string(offending));
  }

  bool Accept(std::string_view keyword) {
    if (!IsKeyword(Peek(), keyword)) return false;
    Next();
    return true;
  }
  void Expect(std::string_view keyword) {
    if (!Accept(keyword)) Fail();
  }
  bool AcceptSymbol(std::string_view symbol) {
    if (Peek().kind != TokenKind::kSymbol || Peek().text != symbol) return false;
    Next();
    return true;
  }
  void ExpectSymbol(std::string_view symbol) {
    if (!AcceptSymbol(symbol)) Fail();
  }
  // One more level of parentheses or Not; past kMaxNesting the text is refused.
  void Deeper() {
    if (++depth_ > kMaxNesting) Fail();
  }

  bool AtName() const {
    return Peek().kind == TokenKind::kName ||
           (Peek().kind == TokenKind::kWord && !IsReserved(Peek()));
  }
  std::string Name() {
    if (!AtName()) Fail();
    return Next().text;
  }
  // A column name: remembered for the unknown-name check, emitted quoted.
  void ColumnName(std::string& sql) {
    std::string name = Name();
    syntax_.AppendQuotedName(sql, name);
    result_.names.push_back(std::move(name));
  }

  void SelectList() {
    result_.distinct = Accept("DISTINCT");
    clauseStart_ = Peek().offset;
    if (AcceptSymbol("*")) return;
    do {
      result_.columns.push_back(Name());
      result_.names.push_back(result_.columns.back());
    } while (AcceptSymbol(","));
  }

  void From() {
    if (!Accept("FROM")) Fail();
    if (!AtName()) throw FromClauseError();
    result_.source = Next().text;
    if (Peek().kind == TokenKind::kSymbol && Peek().text == ",") throw FromClauseError();
  }

  void OrderBy() {
    do {
      std::string name = Name();
      result_.names.push_back(name);
      bool descending = Accept("DESC");
      if (!descending) Accept("ASC");
      result_.orderBy.push_back({std::move(name), descending});
    } while (AcceptSymbol(","));
  }

  // expr := conjunction {Or conjunction}
  void Expression(std::string& sql) {
    Conjunction(sql);
    while (Accept("OR")) {
      sql += " OR ";
      Conjunction(sql);
    }
  }
  // conjunction := negation {And negation}
  void Conjunction(std::string& sql) {
    Negation(sql);
    while (Accept("AND")) {
      sql += " AND ";
      Negation(sql);
    }
  }
  // negation := Not negation | predicate
  void Negation(std::string& sql) {
    if (Accept("NOT")) {
      sql += "NOT ";
      Deeper();
      Negation(sql);
      --depth_;
    } else {
      Predicate(sql);
    }
  }
  // predicate := operand [comparison operand | Is [Not] Null | [Not] Like text]
  // A predicate with an operator is emitted in parentheses; a lone operand as it is.
  void Predicate(std::string& sql) {
    std::size_t start = sql.size();
    Operand(sql);
    static constexpr std::string_view kComparisons[] = {"=", "<>", "<", ">", "<=", ">="};
    const Token& token = Peek();
    if (token.kind == TokenKind::kSymbol &&
        std::find(std::begin(kComparisons), std::end(kComparisons), token.text) !=
            std::end(kComparisons)) {
      sql += ' ';
      sql += Next().text;
      sql += ' ';
      Operand(sql);
    } else if (Accept("IS")) {
      sql += Accept("NOT") ? " IS NOT NULL" : " IS NULL";
      Expect("NULL");
    } else if (IsKeyword(token, "LIKE") || IsKeyword(token, "NOT")) {
      if (Accept("NOT")) sql += " NOT";
      Expect("LIKE");
      if (Peek().kind != TokenKind::kLiteral ||
          !std::holds_alternative<std::string>(Peek().value)) {
        Fail();
      }
      sql += ' ';
      sql += syntax_.CaseInsensitiveLike();
      sql += ' ';
      Parameter(sql, LikePattern(std::get<std::string>(Next().value)));
      sql += " ESCAPE '\\'";
    } else {
      return;
    }
    sql.insert(start, 1, '(');
    sql += ')';
  }
  // operand := name | literal | [+|-] number | True | False | Null | ( expr )
  void Operand(std::string& sql) {
    if (AcceptSymbol("(")) {
      sql += '(';
      Deeper();
      Expression(sql);
      --depth_;
      ExpectSymbol(")");
      sql += ')';
    } else if (Peek().kind == TokenKind::kLiteral) {
      Parameter(sql, Next().value);
    } else if (Peek().kind == TokenKind::kSymbol && (Peek().text == "-" || Peek().text == "+")) {
      bool negative = Next().text == "-";
      if (Peek().kind != TokenKind::kLiteral || Peek().text.empty()) Fail();  // a number only
      SqlValue value = Next().value;
      if (negative) {
        if (auto* whole = std::get_if<std::int64_t>(&value)) {
          *whole = -*whole;
        } else {
          std::get<double>(value) = -std::get<double>(value);
        }
      }
      Parameter(sql, std::move(value));
    } else if (Accept("TRUE")) {
      Parameter(sql, std::int64_t{-1});
    } else if (Accept("FALSE")) {
      Parameter(sql, std::int64_t{0});
    } else if (Accept("NULL")) {
      Parameter(sql, SqlValue{});
    } else {
      ColumnName(sql);
    }
  }
  void Parameter(std::string& sql, SqlValue value) {
    result_.parameters.push_back(std::move(value));
    syntax_.AppendPlaceholder(sql, result_.parameters.size());
  }

  std::string_view text_;
  const SqlSyntax& syntax_;
  std::vector<Token> tokens_;
  std::size_t position_ = 0;
  std::size_t clauseStart_ = 0;
  int depth_ = 0;  // parentheses and Not open around the current point
  ParsedStatement result_;
};

}  // namespace

ParsedStatement Parse(std::string_view text, const SqlSyntax& syntax) {
  return Parser(text, syntax).Statement();
}

ParsedStatement ParseRecordSource(std::string_view text, const SqlSyntax& syntax) {
  std::string_view name = text;
  while (!name.empty() && std::isspace(static_cast<unsigned char>(name.front()))) {
    name.remove_prefix(1);
  }
  while (!name.empty() && std::isspace(static_cast<unsigned char>(name.back()))) {
    name.remove_suffix(1);
  }
  auto startsWith = [&](std::string_view keyword) {
    if (!platform::StartsWithIgnoringAsciiCase(name, keyword)) return false;
    return name.size() == keyword.size() ||
           !std::isalnum(static_cast<unsigned char>(name[keyword.size()]));
  };
  if (startsWith("SELECT")) return Parse(text, syntax);
  if (name.size() > 2 && name.front() == '[' && name.back() == ']') {
    name = name.substr(1, name.size() - 2);
  }
  if (name.empty() || startsWith("DELETE")) throw SyntaxError(std::string(name));
  ParsedStatement statement;
  statement.source = name;
  return statement;
}

namespace {

bool DeclaredAsNoText(const SourceInfo* source, std::string_view column) {
  if (!source) return false;
  for (const ColumnInfo& info : source->columns) {
    if (platform::EqualsIgnoringAsciiCase(info.name, column)) {
      return info.kind != DeclaredKind::kText && info.kind != DeclaredKind::kUnknown;
    }
  }
  return false;
}

void AppendNames(std::string& sql, const std::vector<std::string>& names, const SqlSyntax& syntax) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i) sql += ", ";
    syntax.AppendQuotedName(sql, names[i]);
  }
}

void AppendOrderBy(std::string& sql, const ParsedStatement& statement, const SqlSyntax& syntax,
                   const SourceInfo* source) {
  for (std::size_t i = 0; i < statement.orderBy.size(); ++i) {
    const auto& key = statement.orderBy[i];
    sql += i ? ", " : " ORDER BY ";
    syntax.AppendQuotedName(sql, key.name);
    if (!DeclaredAsNoText(source, key.name)) sql += syntax.CaseInsensitiveOrder();
    if (key.descending) sql += " DESC";
    sql += syntax.NullsAsSmallest(key.descending);
  }
}

// A Distinct over named columns where the engine's own DISTINCT may reorder the rows: the rows
// numbered as they come, grouped, and given in the order of their first copies (or sorted).
std::string DistinctInFirstCopyOrder(const ParsedStatement& statement, const SqlSyntax& syntax,
                                     const SourceInfo* source) {
  std::string names;
  AppendNames(names, statement.columns, syntax);
  std::string sql = "SELECT " + names + " FROM (SELECT " + names +
                    ", row_number() OVER () AS copy_number FROM ";
  syntax.AppendQuotedName(sql, statement.source);
  if (!statement.where.empty()) sql += " WHERE " + statement.where;
  sql += ") AS numbered GROUP BY " + names;
  if (statement.orderBy.empty()) {
    sql += " ORDER BY min(copy_number)";
  } else {
    AppendOrderBy(sql, statement, syntax, source);
  }
  return sql;
}

}  // namespace

std::string SelectSql(const ParsedStatement& statement, bool withRowId, const SqlSyntax& syntax,
                      const SourceInfo* source) {
  if (statement.distinct && !syntax.DistinctKeepsFirstCopies() && !statement.columns.empty() &&
      !withRowId) {
    return DistinctInFirstCopyOrder(statement, syntax, source);
  }
  std::string sql = statement.distinct ? "SELECT DISTINCT " : "SELECT ";
  if (withRowId) {
    sql += syntax.RowIdentity();
    sql += ", ";
  }
  if (statement.columns.empty()) {
    sql += '*';
  } else {
    AppendNames(sql, statement.columns, syntax);
  }
  sql += " FROM ";
  syntax.AppendQuotedName(sql, statement.source);
  if (!statement.where.empty()) sql += " WHERE " + statement.where;
  AppendOrderBy(sql, statement, syntax, source);
  return sql;
}

std::string DeleteSql(const ParsedStatement& statement, const SqlSyntax& syntax) {
  std::string sql = "DELETE FROM ";
  syntax.AppendQuotedName(sql, statement.source);
  if (!statement.where.empty()) sql += " WHERE " + statement.where;
  return sql;
}

}  // namespace brindlewayProj::store::dialect
