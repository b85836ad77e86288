// The embedded SQLite backend: one store file, WAL journal, synchronous=FULL, foreign keys on,
// a busy timeout of five seconds, opened shared for reading and writing.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <unordered_map>

#include "store/backend.h"
#include "store/sqlite/statement.h"
#include "store/statement_cache.h"

namespace brindlewayProj::store::sqlite {

inline constexpr int kBusyTimeoutMilliseconds = 5000;

// Opens the store file `file` (see SqliteConnection).
std::shared_ptr<Connection> Open(const std::filesystem::path& file);

// How SQLite spells names, placeholders, the row identity and case-insensitive text.
const SqlSyntax& Syntax();

class SqliteConnection : public Connection {
 public:
  explicit SqliteConnection(const std::filesystem::path& file);
  ~SqliteConnection() override;
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;

  std::shared_ptr<Statement> Prepare(const std::string& sql) override;
  long long Execute(const std::string& sql, const std::vector<SqlValue>& values) override;
  std::optional<SourceInfo> Describe(const std::string& name) override;
  const SqlSyntax& Syntax() const override { return sqlite::Syntax(); }
  std::optional<std::vector<SqlValue>> ReadRow(const SourceInfo& table,
                                               std::span<const std::string> columns,
                                               const RowId& row) override;
  long long UpdateRow(const SourceInfo& table, const RowId& row,
                      std::span<const ColumnValue> changes,
                      std::span<const ColumnValue> expected) override;
  AddedRow InsertRow(const SourceInfo& table, std::span<const ColumnValue> values,
                     std::span<const std::string> columns) override;
  bool ParentRowExists(const ForeignKey& key, const SqlValue& value) override;
  std::int64_t ReserveKey(const SourceInfo& table) override;
  void Begin(int level) override;
  void Commit(int level) override;
  void Rollback(int level) override;

 private:
  sqlite3* db_ = nullptr;
  StatementCache<SqliteStatement> statements_;
  // The highest key handed out per table, so that a key of a rolled-back row is not reused.
  std::unordered_map<std::string, std::int64_t> keysHandedOut_;
};

}  // namespace brindlewayProj::store::sqlite
