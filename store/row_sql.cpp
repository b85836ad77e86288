// Single-row SQL in any engine's spelling, and reading the row found.
#include "store/row_sql.h"

namespace brindlewayProj::store {
namespace {

void AppendParameter(const SqlSyntax& syntax, std::string& sql, std::vector<SqlValue>& parameters,
                     const SqlValue& value) {
  parameters.push_back(value);
  syntax.AppendPlaceholder(sql, parameters.size());
}

}  // namespace

std::string ReadRowSql(const SqlSyntax& syntax, const SourceInfo& table,
                       std::span<const std::string> columns) {
  std::string sql = "SELECT ";
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (i) sql += ", ";
    syntax.AppendQuotedName(sql, columns[i]);
  }
  sql += " FROM ";
  syntax.AppendQuotedName(sql, table.name);
  sql += " WHERE ";
  sql += syntax.RowIdentity();
  sql += " = ";
  syntax.AppendPlaceholder(sql, 1);
  return sql;
}

std::string ParentRowSql(const SqlSyntax& syntax, const ForeignKey& key) {
  std::string sql = "SELECT 1 FROM ";
  syntax.AppendQuotedName(sql, key.parentTable);
  sql += " WHERE ";
  if (key.parentColumn.empty()) {
    sql += syntax.RowIdentity();
  } else {
    syntax.AppendQuotedName(sql, key.parentColumn);
  }
  sql += " = ";
  syntax.AppendPlaceholder(sql, 1);
  return sql;
}

std::optional<std::vector<SqlValue>> NextRowValues(Statement& statement, std::size_t columns) {
  if (!statement.Step()) return std::nullopt;
  std::vector<SqlValue> values;
  values.reserve(columns);
  for (std::size_t i = 0; i < columns; ++i) values.push_back(statement.Column(static_cast<int>(i)));
  return values;
}

std::string UpdateRowSql(const SqlSyntax& syntax, const SourceInfo& table, const RowId& row,
                         std::span<const ColumnValue> changes,
                         std::span<const ColumnValue> expected,
                         std::vector<SqlValue>& parameters) {
  std::string sql = "UPDATE ";
  syntax.AppendQuotedName(sql, table.name);
  sql += " SET ";
  parameters.reserve(changes.size() + 1 + expected.size());
  for (const ColumnValue& change : changes) {
    if (!parameters.empty()) sql += ", ";
    syntax.AppendQuotedName(sql, change.column);
    sql += " = ";
    AppendParameter(syntax, sql, parameters, change.value);
  }
  sql += " WHERE ";
  sql += syntax.RowIdentity();
  sql += " = ";
  AppendParameter(syntax, sql, parameters, row);
  for (const ColumnValue& held : expected) {
    sql += " AND ";
    syntax.AppendQuotedName(sql, held.column);
    sql += syntax.NullSafeEquals();
    AppendParameter(syntax, sql, parameters, held.value);
  }
  return sql;
}

std::string InsertRowSql(const SqlSyntax& syntax, const SourceInfo& table,
                         std::span<const ColumnValue> values, std::vector<SqlValue>& parameters) {
  std::string sql = "INSERT INTO ";
  syntax.AppendQuotedName(sql, table.name);
  if (values.empty()) return sql + " DEFAULT VALUES";
  std::string names, placeholders;
  parameters.reserve(values.size());
  for (const ColumnValue& value : values) {
    if (!names.empty()) names += ", ", placeholders += ", ";
    syntax.AppendQuotedName(names, value.column);
    AppendParameter(syntax, placeholders, parameters, value.value);
  }
  return sql + " (" + names + ") VALUES (" + placeholders + ")";
}

}  // namespace brindlewayProj::store
