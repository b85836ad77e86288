// SQLite connections: opening a store file, the statement cache, transactions and the SQL
// spelling of this engine.
#include "store/sqlite/connection.h"

#include "store/sqlite/errors.h"

namespace brindlewayProj::store::sqlite {
namespace {

class SqliteSyntax : public SqlSyntax {
 public:
  void AppendPlaceholder(std::string& sql, std::size_t /*number*/) const override { sql += '?'; }
  std::string_view RowIdentity() const override { return "rowid"; }
  std::string_view CaseInsensitiveOrder() const override { return " COLLATE NOCASE"; }
  std::string_view NullSafeEquals() const override { return " IS "; }
  // SQLite sorts Null as the smallest value already.
  std::string_view NullsAsSmallest(bool /*descending*/) const override { return ""; }
  bool DistinctKeepsFirstCopies() const override { return true; }
  // SQLite's LIKE ignores the case of ASCII letters already.
  std::string_view CaseInsensitiveLike() const override { return "LIKE"; }
};

}  // namespace

const SqlSyntax& Syntax() {
  static const SqliteSyntax syntax;
  return syntax;
}

SqliteConnection::SqliteConnection(const std::filesystem::path& file) {
  int code =
      sqlite3_open_v2(file.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  if (code != SQLITE_OK) {
    sqlite3_close_v2(db_);
    throw BackendError(KindOf(code), sqlite3_errstr(code), {}, code);
  }
  sqlite3_extended_result_codes(db_, 1);
  sqlite3_busy_timeout(db_, kBusyTimeoutMilliseconds);
  try {
    // Reading the schema here finds a file that is no database at once.
    Execute("SELECT count(*) FROM sqlite_master", {});
    Execute("PRAGMA journal_mode=WAL", {});
    Execute("PRAGMA synchronous=FULL", {});
    Execute("PRAGMA foreign_keys=ON", {});
  } catch (...) {
    statements_.Clear();
    sqlite3_close_v2(db_);
    throw;
  }
}

SqliteConnection::~SqliteConnection() {
  statements_.Clear();
  if (!sqlite3_get_autocommit(db_)) sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close_v2(db_);
}

std::shared_ptr<Statement> SqliteConnection::Prepare(const std::string& sql) {
  return statements_.Lease(sql, [&](bool) { return std::make_unique<SqliteStatement>(db_, sql); });
}

long long SqliteConnection::Execute(const std::string& sql, const std::vector<SqlValue>& values) {
  auto statement = Prepare(sql);
  statement->Bind(values);
  while (statement->Step()) {
  }
  return sqlite3_changes64(db_);
}

namespace {

std::string SavepointName(int level) { return "\"level" + std::to_string(level) + "\""; }

}  // namespace

void SqliteConnection::Begin(int level) {
  Execute(level == 1 ? "BEGIN IMMEDIATE" : "SAVEPOINT " + SavepointName(level), {});
}

void SqliteConnection::Commit(int level) {
  Execute(level == 1 ? "COMMIT" : "RELEASE SAVEPOINT " + SavepointName(level), {});
}

void SqliteConnection::Rollback(int level) {
  if (sqlite3_get_autocommit(db_)) return;  // the engine ended the transaction already
  if (level == 1) {
    Execute("ROLLBACK", {});
  } else {
    Execute("ROLLBACK TO SAVEPOINT " + SavepointName(level), {});
    Execute("RELEASE SAVEPOINT " + SavepointName(level), {});
  }
}

std::shared_ptr<Connection> Open(const std::filesystem::path& file) {
  return std::make_shared<SqliteConnection>(file);
}

}  // namespace brindlewayProj::store::sqlite
