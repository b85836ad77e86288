// Single rows of a PostgreSQL table by their ctid: reading, updating (only while the row still
// holds what was read), inserting and the key of a new row; and the look-up of a referenced
// parent row.
//
// A ctid names where a row version lies, and an update writes a new version elsewhere. The
// component edits rows inside its transactions, which hold the database's write lock, so no
// one else moves them meanwhile; the connection remembers where its own updates moved rows
// until the transaction ends (or the savepoint of an update is rolled back, which moves the row
// back). Only then may the server give an old place to another row, so after an update outside
// a transaction the row is not found again by its old place.
#include "store/postgres/connection.h"
#include "store/row_sql.h"

namespace brindlewayProj::store::postgres {
namespace {

void AppendName(std::string& sql, std::string_view name) { Syntax().AppendQuotedName(sql, name); }

// The key of a row's place among the places of every table.
std::string PlaceKey(const SourceInfo& table, const std::string& place) {
  return table.name + '\0' + place;
}

}  // namespace

RowId PostgresConnection::CurrentPlace(const SourceInfo& table, const RowId& row) const {
  auto* place = std::get_if<std::string>(&row);
  if (!place) return row;
  auto found = moved_.find(PlaceKey(table, *place));
  if (found == moved_.end() || !channel_.Holds(found->second.second)) return row;
  return found->second.first;
}

std::optional<std::vector<SqlValue>> PostgresConnection::ReadRow(
    const SourceInfo& table, std::span<const std::string> columns, const RowId& row) {
  auto statement = Prepare(ReadRowSql(Syntax(), table, columns));
  statement->Bind({CurrentPlace(table, row)});
  return NextRowValues(*statement, columns.size());
}

long long PostgresConnection::UpdateRow(const SourceInfo& table, const RowId& row,
                                        std::span<const ColumnValue> changes,
                                        std::span<const ColumnValue> expected) {
  std::vector<SqlValue> parameters;
  auto statement = Prepare(
      UpdateRowSql(Syntax(), table, CurrentPlace(table, row), changes, expected, parameters) +
      " RETURNING ctid");
  statement->Bind(parameters);
  if (!statement->Step()) return 0;
  auto* place = std::get_if<std::string>(&row);
  if (place && channel_.InTransaction()) {
    moved_[PlaceKey(table, *place)] = {statement->Column(0), channel_.Level()};
  }
  return 1;
}

// The row comes back with the INSERT itself: its place, then its columns as stored.
AddedRow PostgresConnection::InsertRow(const SourceInfo& table, std::span<const ColumnValue> values,
                                       std::span<const std::string> columns) {
  std::vector<SqlValue> parameters;
  std::string sql = InsertRowSql(Syntax(), table, values, parameters) + " RETURNING ctid";
  for (const std::string& column : columns) {
    sql += ", ";
    AppendName(sql, column);
  }
  auto statement = Prepare(sql);
  statement->Bind(parameters);
  auto row = NextRowValues(*statement, columns.size() + 1);
  if (!row) return {};
  RowId id = std::move(row->front());
  row->erase(row->begin());
  return {std::move(id), std::move(row)};
}

bool PostgresConnection::ParentRowExists(const ForeignKey& key, const SqlValue& value) {
  auto lookup = Prepare(ParentRowSql(Syntax(), key));
  lookup->Bind({value});
  return lookup->Step();
}

// The key comes from the identity column's sequence, which never hands a number out twice,
// rolled back or not; rows stored with keys of their own may have gone past the sequence, which
// is then moved on beyond the highest stored key.
std::int64_t PostgresConnection::ReserveKey(const SourceInfo& table) {
  std::string quotedTable, quotedKey;
  AppendName(quotedTable, table.name);
  AppendName(quotedKey, table.integerKey);
  auto next = Prepare(
      "SELECT CASE WHEN drawn >= above THEN drawn ELSE setval(sequence, above) END FROM "
      "(SELECT sequence, nextval(sequence) AS drawn, (SELECT coalesce(max(" + quotedKey +
      "), 0) + 1 FROM " + quotedTable + ") AS above "
      "FROM pg_get_serial_sequence($1, $2) AS sequence) AS next");
  next->Bind({quotedTable, table.integerKey});
  next->Step();
  return std::get<std::int64_t>(next->Column(0));
}

}  // namespace brindlewayProj::store::postgres
