// Single rows of a PostgreSQL table by their ctid: reading, updating (only while the row still
// holds what was read), inserting and the key of a new row; and the look-up of a referenced
// parent row.
//
// A ctid names where a row version lies, and an update writes a new version elsewhere. The
// component edits rows inside its transactions, which hold the database's write lock, so no
// one else moves them meanwhile; the connection remembers where its own updates moved rows
// until the transaction ends. Only then may the server give an old place to another row, so
// after an update outside a transaction the row is not found again by its old place.
#include "store/postgres/connection.h"

namespace brindlewayProj::store::postgres {
namespace {

void AppendName(std::string& sql, std::string_view name) { Syntax().AppendQuotedName(sql, name); }

void AppendParameter(std::string& sql, std::vector<SqlValue>& parameters, const SqlValue& value) {
  parameters.push_back(value);
  Syntax().AppendPlaceholder(sql, parameters.size());
}

}  // namespace

namespace {

// The key of a row's place among the places of every table.
std::string PlaceKey(const SourceInfo& table, const std::string& place) {
  return table.name + '\0' + place;
}

}  // namespace

RowId PostgresConnection::CurrentPlace(const SourceInfo& table, const RowId& row) const {
  auto* place = std::get_if<std::string>(&row);
  if (!place) return row;
  auto found = moved_.find(PlaceKey(table, *place));
  return found == moved_.end() ? row : found->second;
}

std::optional<std::vector<SqlValue>> PostgresConnection::ReadRow(
    const SourceInfo& table, std::span<const std::string> columns, const RowId& row) {
  std::string sql = "SELECT ";
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (i) sql += ", ";
    AppendName(sql, columns[i]);
  }
  sql += " FROM ";
  AppendName(sql, table.name);
  sql += " WHERE ctid = $1";
  auto statement = Prepare(sql);
  statement->Bind({CurrentPlace(table, row)});
  std::optional<std::vector<SqlValue>> values;
  if (statement->Step()) {
    values.emplace();
    values->reserve(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
      values->push_back(statement->Column(static_cast<int>(i)));
    }
  }
  return values;
}

long long PostgresConnection::UpdateRow(const SourceInfo& table, const RowId& row,
                                        std::span<const ColumnValue> changes,
                                        std::span<const ColumnValue> expected) {
  std::string sql = "UPDATE ";
  AppendName(sql, table.name);
  sql += " SET ";
  std::vector<SqlValue> parameters;
  parameters.reserve(changes.size() + 1 + expected.size());
  for (const ColumnValue& change : changes) {
    if (!parameters.empty()) sql += ", ";
    AppendName(sql, change.column);
    sql += " = ";
    AppendParameter(sql, parameters, change.value);
  }
  sql += " WHERE ctid = ";
  AppendParameter(sql, parameters, CurrentPlace(table, row));
  for (const ColumnValue& held : expected) {
    sql += " AND ";
    AppendName(sql, held.column);
    sql += " IS NOT DISTINCT FROM ";
    AppendParameter(sql, parameters, held.value);
  }
  sql += " RETURNING ctid";
  auto statement = Prepare(sql);
  statement->Bind(parameters);
  if (!statement->Step()) return 0;
  auto* place = std::get_if<std::string>(&row);
  if (place && PQtransactionStatus(db_) == PQTRANS_INTRANS) {
    moved_[PlaceKey(table, *place)] = statement->Column(0);
  }
  return 1;
}

RowId PostgresConnection::InsertRow(const SourceInfo& table, std::span<const ColumnValue> values) {
  std::string sql = "INSERT INTO ";
  AppendName(sql, table.name);
  std::vector<SqlValue> parameters;
  parameters.reserve(values.size());
  if (values.empty()) {
    sql += " DEFAULT VALUES";
  } else {
    std::string names, placeholders;
    for (const ColumnValue& value : values) {
      if (!names.empty()) names += ", ", placeholders += ", ";
      AppendName(names, value.column);
      AppendParameter(placeholders, parameters, value.value);
    }
    sql += " (" + names + ") OVERRIDING SYSTEM VALUE VALUES (" + placeholders + ")";
  }
  sql += " RETURNING ctid";
  auto statement = Prepare(sql);
  statement->Bind(parameters);
  statement->Step();
  return statement->Column(0);
}

bool PostgresConnection::ParentRowExists(const ForeignKey& key, const SqlValue& value) {
  std::string sql = "SELECT 1 FROM ";
  AppendName(sql, key.parentTable);
  sql += " WHERE ";
  AppendName(sql, key.parentColumn);
  sql += " = $1";
  auto lookup = Prepare(sql);
  lookup->Bind({value});
  return lookup->Step();
}

// The key comes from the identity column's sequence, which never hands a number out twice,
// rolled back or not; rows stored with keys of their own may have gone past the sequence, so
// it is moved beyond the highest stored key first.
std::int64_t PostgresConnection::ReserveKey(const SourceInfo& table) {
  std::string quotedTable, quotedKey;
  AppendName(quotedTable, table.name);
  AppendName(quotedKey, table.integerKey);
  auto next = Prepare("SELECT setval(pg_get_serial_sequence($1, $2), greatest(nextval("
                      "pg_get_serial_sequence($1, $2)), (SELECT coalesce(max(" +
                      quotedKey + "), 0) + 1 FROM " + quotedTable + ")))");
  next->Bind({quotedTable, table.integerKey});
  next->Step();
  return std::get<std::int64_t>(next->Column(0));
}

}  // namespace brindlewayProj::store::postgres
