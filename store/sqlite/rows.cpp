// Single rows of a SQLite table by their rowid: reading, updating (only while the row still
// holds what was read), inserting and the key of a new row; and the look-up of a referenced
// parent row.
#include <sqlite3.h>

#include "store/row_sql.h"
#include "store/sqlite/connection.h"

namespace brindlewayProj::store::sqlite {
namespace {

void AppendName(std::string& sql, std::string_view name) { Syntax().AppendQuotedName(sql, name); }

}  // namespace

std::optional<std::vector<SqlValue>> SqliteConnection::ReadRow(const SourceInfo& table,
                                                               std::span<const std::string> columns,
                                                               const RowId& row) {
  auto statement = Prepare(ReadRowSql(Syntax(), table, columns));
  statement->Bind({row});
  return NextRowValues(*statement, columns.size());
}

long long SqliteConnection::UpdateRow(const SourceInfo& table, const RowId& row,
                                      std::span<const ColumnValue> changes,
                                      std::span<const ColumnValue> expected) {
  std::vector<SqlValue> parameters;
  const std::string sql = UpdateRowSql(Syntax(), table, row, changes, expected, parameters);
  return Execute(sql, parameters);
}

AddedRow SqliteConnection::InsertRow(const SourceInfo& table, std::span<const ColumnValue> values,
                                     std::span<const std::string> columns) {
  std::vector<SqlValue> parameters;
  const std::string sql = InsertRowSql(Syntax(), table, values, parameters);
  Execute(sql, parameters);
  RowId id = static_cast<std::int64_t>(sqlite3_last_insert_rowid(db_));
  return {id, ReadRow(table, columns, id)};
}

bool SqliteConnection::ParentRowExists(const ForeignKey& key, const SqlValue& value) {
  auto lookup = Prepare(ParentRowSql(Syntax(), key));
  lookup->Bind({value});
  return lookup->Step();
}

// The next key is above the highest stored one, above the table's sequence (AUTOINCREMENT),
// and above every key this connection handed out before, rolled back or not. An AUTOINCREMENT
// table's sequence takes the key at once, so that other connections skip it too.
std::int64_t SqliteConnection::ReserveKey(const SourceInfo& table) {
  bool ownTransaction = table.autoIncrement && sqlite3_get_autocommit(db_) != 0;
  if (ownTransaction) Begin(1);
  try {
    std::string highest = "SELECT coalesce(max(rowid), 0) FROM ";
    AppendName(highest, table.name);
    if (table.autoIncrement) {
      highest = "SELECT max(coalesce((SELECT seq FROM sqlite_sequence WHERE name = ?1), 0), (" +
                highest + "))";
    }
    auto next = Prepare(highest);
    next->Bind(table.autoIncrement ? std::vector<SqlValue>{table.name} : std::vector<SqlValue>{});
    next->Step();
    std::int64_t& handedOut = keysHandedOut_[table.name];
    std::int64_t key = std::max(std::get<std::int64_t>(next->Column(0)), handedOut) + 1;
    next.reset();
    if (table.autoIncrement &&
        Execute("UPDATE sqlite_sequence SET seq = ?1 WHERE name = ?2", {key, table.name}) == 0) {
      Execute("INSERT INTO sqlite_sequence (name, seq) VALUES (?1, ?2)", {table.name, key});
    }
    if (ownTransaction) Commit(1);
    handedOut = key;
    return key;
  } catch (...) {
    if (ownTransaction) Rollback(1);
    throw;
  }
}

}  // namespace brindlewayProj::store::sqlite
