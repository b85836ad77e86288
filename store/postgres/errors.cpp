// PostgreSQL SQLSTATEs mapped onto the backend's failure kinds.
#include "store/postgres/errors.h"

#include <charconv>
#include <string>

namespace brindlewayProj::store::postgres {

FailureKind KindOf(std::string_view sqlState) {
  if (sqlState == "23503") return FailureKind::kForeignKey;
  if (sqlState == "23502") return FailureKind::kNotNull;
  if (sqlState == "23505") return FailureKind::kUnique;
  // Waits past lock_timeout, deadlocks and serialization failures: another writer holds it.
  if (sqlState == "55P03" || sqlState == "40P01" || sqlState == "40001") return FailureKind::kBusy;
  if (sqlState == "53100") return FailureKind::kFull;
  if (sqlState == "25006") return FailureKind::kReadOnly;
  if (sqlState.starts_with("08")) return FailureKind::kCantConnect;
  return FailureKind::kOther;
}

void Fail(PGconn* db, PGresult* result) {
  const char* state = result ? PQresultErrorField(result, PG_DIAG_SQLSTATE) : nullptr;
  const char* primary = result ? PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY) : nullptr;
  const char* column = result ? PQresultErrorField(result, PG_DIAG_COLUMN_NAME) : nullptr;
  std::string message = primary ? primary : PQerrorMessage(db);
  while (!message.empty() && message.back() == '\n') message.pop_back();
  std::string_view code = state ? state : "08006";  // no result: the connection broke
  int number = 0;
  std::from_chars(code.data(), code.data() + code.size(), number);
  FailureKind kind = KindOf(code);
  std::string detail = kind == FailureKind::kNotNull && column ? column : "";
  // 'Key (ProductId)=(9) is not present in table "Products".'
  const char* reference = result ? PQresultErrorField(result, PG_DIAG_MESSAGE_DETAIL) : nullptr;
  const std::string_view absent = reference ? reference : "";
  const std::size_t parent = absent.find("is not present in table \"");
  if (kind == FailureKind::kForeignKey && parent != std::string_view::npos) {
    const std::size_t start = parent + 25;
    detail = absent.substr(start, absent.find('"', start) - start);
  }
  PQclear(result);
  throw BackendError(kind, message, detail, number);
}

bool Succeeded(const PGresult* result) {
  const ExecStatusType status = PQresultStatus(result);
  return status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK;
}

void Run(PGconn* db, const char* sql) {
  PGresult* result = PQexec(db, sql);
  if (!Succeeded(result)) Fail(db, result);
  PQclear(result);
}

}  // namespace brindlewayProj::store::postgres
