// PostgreSQL connections: connecting by URI, the statement cache, transactions and the SQL
// spelling of this engine.
#include "store/postgres/connection.h"

#include "store/postgres/errors.h"
#include "store/store_name.h"

namespace brindlewayProj::store::postgres {
namespace {

// A transaction opens with the advisory lock that it holds while it may write: one writer per
// database at a time, as on the embedded engine, so that concurrent sales neither deadlock nor
// fail to serialize; a writer waits for another up to the lock timeout.
const std::vector<std::string> kBeginCommands = {"BEGIN ISOLATION LEVEL READ COMMITTED",
                                                 "SELECT pg_advisory_xact_lock(7468190264)"};

class PostgresSyntax : public SqlSyntax {
 public:
  void AppendPlaceholder(std::string& sql, std::size_t number) const override {
    sql += '$';
    sql += std::to_string(number);
  }
  std::string_view RowIdentity() const override { return "ctid"; }
  // The schema's collation that orders text as the embedded engine's NOCASE does: ASCII
  // letters without regard to case.
  std::string_view CaseInsensitiveOrder() const override { return " COLLATE nocase"; }
  std::string_view NullSafeEquals() const override { return " IS NOT DISTINCT FROM "; }
  std::string_view NullsAsSmallest(bool descending) const override {
    return descending ? " NULLS LAST" : " NULLS FIRST";
  }
  // DISTINCT may hash or sort the rows.
  bool DistinctKeepsFirstCopies() const override { return false; }
  std::string_view CaseInsensitiveLike() const override { return "ILIKE"; }
};

std::string SavepointName(int level) { return "\"level" + std::to_string(level) + "\""; }

}  // namespace

const SqlSyntax& Syntax() {
  static const PostgresSyntax syntax;
  return syntax;
}

// Connects; a failure raises kCantConnect with a message free of the password.
PGconn* Connect(const std::string& uri) {
  const char* keys[] = {"dbname", "options", "fallback_application_name", nullptr};
  const std::string options = "-c lock_timeout=" + std::to_string(kLockTimeoutMilliseconds) +
                              " -c DateStyle=ISO -c client_encoding=UTF8";
  const char* values[] = {uri.c_str(), options.c_str(), "brindleway", nullptr};
  PGconn* db = PQconnectdbParams(keys, values, 1);
  if (PQstatus(db) != CONNECTION_OK) {
    std::string reason = db ? PQerrorMessage(db) : "out of memory";
    PQfinish(db);
    throw BackendError(FailureKind::kCantConnect, ConcealPassword(reason, uri));
  }
  return db;
}

PostgresConnection::PostgresConnection(const std::string& uri) : db_(Connect(uri)), channel_(db_) {}

PostgresConnection::~PostgresConnection() {
  statements_.Clear();
  PQfinish(db_);  // ends an open transaction with a rollback
}

std::shared_ptr<Statement> PostgresConnection::Prepare(const std::string& sql) {
  return statements_.Lease(sql, [&](bool kept) {
    static thread_local std::uint64_t serving = 0;
    const std::string name =
        kept ? ServerName("s", statements_.Size()) : ServerName("once", ++serving);
    return std::make_unique<PostgresStatement>(channel_, name, sql);
  });
}

long long PostgresConnection::Execute(const std::string& sql, const std::vector<SqlValue>& values) {
  auto statement = Prepare(sql);
  statement->Bind(values);
  while (statement->Step()) {
  }
  return static_cast<PostgresStatement&>(*statement).Changes();
}

void PostgresConnection::Begin(int level) {
  channel_.Open(level, level == 1 ? kBeginCommands
                                  : std::vector<std::string>{"SAVEPOINT " + SavepointName(level)});
}

void PostgresConnection::Commit(int level) {
  if (level == 1) moved_.clear();
  if (channel_.End(level, true)) {
    return;  // the level never reached the server
  } else if (level == 1) {
    // COMMIT of a transaction that failed answers ROLLBACK without an error.
    PGresult* result = PQexec(db_, "COMMIT");
    const bool rolledBack = PQresultStatus(result) == PGRES_COMMAND_OK &&
                            std::string_view(PQcmdStatus(result)) == "ROLLBACK";
    if (PQresultStatus(result) != PGRES_COMMAND_OK) Fail(db_, result);
    PQclear(result);
    if (rolledBack) throw BackendError(FailureKind::kOther, "The transaction was rolled back.");
  } else {
    Run(db_, ("RELEASE SAVEPOINT " + SavepointName(level)).c_str());
  }
}

void PostgresConnection::Rollback(int level) {
  if (level == 1) moved_.clear();
  if (channel_.End(level, false) || PQtransactionStatus(db_) == PQTRANS_IDLE) {
    return;  // the level never reached the server, or the server ended it already
  } else if (level == 1) {
    Run(db_, "ROLLBACK");
  } else {
    Run(db_, ("ROLLBACK TO SAVEPOINT " + SavepointName(level) + "; RELEASE SAVEPOINT " +
              SavepointName(level))
                 .c_str());
  }
}

std::shared_ptr<Connection> Open(const std::string& uri) {
  return std::make_shared<PostgresConnection>(uri);
}

}  // namespace brindlewayProj::store::postgres
