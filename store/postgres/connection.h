// The PostgreSQL backend: one database on a server, named by a connection URI. Statements are
// prepared once per connection; every value is bound as text and typed by the server from its
// place in the statement. Writers are serialized per database as on the embedded engine: the
// transaction takes an advisory lock, and every lock wait ends after five seconds. Opening a
// transaction or savepoint travels with the next statement (see channel.h).
#pragma once

#include <libpq-fe.h>

#include <memory>
#include <string>
#include <unordered_map>

#include "store/backend.h"
#include "store/postgres/channel.h"
#include "store/postgres/statement.h"
#include "store/statement_cache.h"

namespace brindlewayProj::store::postgres {

inline constexpr int kLockTimeoutMilliseconds = 5000;

// Opens the database of `uri` (see PostgresConnection).
std::shared_ptr<Connection> Open(const std::string& uri);

// How PostgreSQL spells names, placeholders, the row identity and case-insensitive text.
const SqlSyntax& Syntax();

class PostgresConnection : public Connection {
 public:
  // Connects; a failure raises BackendError kCantConnect with a message free of the password.
  explicit PostgresConnection(const std::string& uri);
  ~PostgresConnection() override;
  PostgresConnection(const PostgresConnection&) = delete;
  PostgresConnection& operator=(const PostgresConnection&) = delete;

  std::shared_ptr<Statement> Prepare(const std::string& sql) override;
  long long Execute(const std::string& sql, const std::vector<SqlValue>& values) override;
  std::optional<SourceInfo> Describe(const std::string& name) override;
  const SqlSyntax& Syntax() const override { return postgres::Syntax(); }
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
  // The row identity is the tuple's ctid, which an update moves: where a row of `table` written
  // through this connection lives now.
  RowId CurrentPlace(const SourceInfo& table, const RowId& row) const;

  PGconn* db_;
  Channel channel_;
  StatementCache<PostgresStatement> statements_;
  // Where this connection's updates moved rows in the open transaction: table and ctid before
  // -> ctid after, and the level the update was made in.
  std::unordered_map<std::string, std::pair<RowId, std::uint64_t>> moved_;
};

}  // namespace brindlewayProj::store::postgres
