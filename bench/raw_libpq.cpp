// Raw libpq connections and prepared statements for the PostgreSQL benchmarks.
#include "bench/raw_libpq.h"

#include <stdexcept>

namespace brindlewayProj::bench {
namespace {

void Check(PGconn* db, PGresult* result) {
  const ExecStatusType status = PQresultStatus(result);
  if (status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK) return;
  const std::string message = PQerrorMessage(db);
  PQclear(result);
  throw std::runtime_error(message);
}

}  // namespace

RawPg::RawPg(const std::string& conninfo) : db_(PQconnectdb(conninfo.c_str())) {
  if (PQstatus(db_) != CONNECTION_OK) {
    const std::string message = PQerrorMessage(db_);
    PQfinish(db_);
    throw std::runtime_error(message);
  }
}

RawPg::~RawPg() { PQfinish(db_); }

void RawPg::Exec(const std::string& sql) {
  PGresult* result = PQexec(db_, sql.c_str());
  Check(db_, result);
  PQclear(result);
}

void RawPg::Prepare(const std::string& name, const std::string& sql) {
  if (!prepared_.insert(name).second) return;
  PGresult* result = PQprepare(db_, name.c_str(), sql.c_str(), 0, nullptr);
  Check(db_, result);
  PQclear(result);
}

PGresult* RawPg::Run(const std::string& name, const std::vector<std::string>& values) {
  std::vector<const char*> texts;
  for (const std::string& value : values) texts.push_back(value.c_str());
  PGresult* result = PQexecPrepared(db_, name.c_str(), static_cast<int>(texts.size()),
                                    texts.data(), nullptr, nullptr, 0);
  Check(db_, result);
  return result;
}

}  // namespace brindlewayProj::bench
