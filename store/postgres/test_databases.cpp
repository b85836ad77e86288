// Test-only throw-away databases: each test takes a fresh clone of a template, so that test
// programs may run side by side on one server.
#include "store/postgres/test_databases.h"

#include <libpq-fe.h>

#include <functional>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>

#include "store/postgres/schema.h"
#include "store/sample_data.h"

namespace brindlewayProj::store::postgres {
namespace {

using Conn = std::unique_ptr<PGconn, decltype(&PQfinish)>;

// A connection to the server's default database (PGDATABASE).
Conn Maintenance() { return Conn(PQconnectdb(""), &PQfinish); }

void Exec(PGconn* db, const std::string& sql) {
  PGresult* result = PQexec(db, sql.c_str());
  const bool ok = PQresultStatus(result) == PGRES_COMMAND_OK ||
                  PQresultStatus(result) == PGRES_TUPLES_OK;
  std::string message = ok ? "" : PQresultErrorMessage(result);
  PQclear(result);
  if (!ok) throw std::runtime_error(message + " in: " + sql);
}

bool DatabaseExists(PGconn* db, const std::string& name) {
  const char* values[] = {name.c_str()};
  PGresult* result =
      PQexecParams(db, "SELECT 1 FROM pg_database WHERE datname = $1", 1, nullptr, values,
                   nullptr, nullptr, 0);
  const bool exists = PQntuples(result) > 0;
  PQclear(result);
  return exists;
}

std::string UriOf(const std::string& database) { return "postgresql:///" + database; }

// The template of a schema version: made once, under a lock that other test programs wait for.
std::string Template(PGconn* db, bool withSample) {
  const std::size_t version =
      std::hash<std::string>{}(std::string(kSchemaSql) + (withSample ? kSampleSql : ""));
  const std::string name = "brindleway_template_" + std::to_string(version % 1000000007);
  if (DatabaseExists(db, name)) return name;
  Exec(db, "SELECT pg_advisory_lock(4711)");
  try {
    if (!DatabaseExists(db, name)) {
      Exec(db, "CREATE DATABASE " + name + "_making");
      CreateStore(UriOf(name + "_making"), withSample);
      Exec(db, "ALTER DATABASE " + name + "_making RENAME TO " + name);
    }
  } catch (...) {
    Exec(db, "DROP DATABASE IF EXISTS " + name + "_making");
    Exec(db, "SELECT pg_advisory_unlock(4711)");
    throw;
  }
  Exec(db, "SELECT pg_advisory_unlock(4711)");
  return name;
}

}  // namespace

std::optional<std::string> ServerMissingForTesting() {
  Conn db = Maintenance();
  if (PQstatus(db.get()) == CONNECTION_OK) return std::nullopt;
  return std::string(PQerrorMessage(db.get()));
}

std::string CreateDatabaseForTesting(bool withSample) {
  Conn db = Maintenance();
  if (PQstatus(db.get()) != CONNECTION_OK) throw std::runtime_error(PQerrorMessage(db.get()));
  const std::string from = Template(db.get(), withSample);
  std::random_device seed;
  const std::string name = "brindleway_test_" + std::to_string(std::mt19937_64(seed())());
  Exec(db.get(), "CREATE DATABASE " + name + " TEMPLATE " + from);
  return UriOf(name);
}

void DropDatabaseForTesting(const std::string& uri) {
  Conn db = Maintenance();
  Exec(db.get(), "DROP DATABASE IF EXISTS " + uri.substr(uri.rfind('/') + 1) + " WITH (FORCE)");
}

std::vector<std::vector<std::string>> RunSqlForTesting(const std::string& uri,
                                                       const std::string& sql, std::string& error) {
  // One connection per database, kept: a login costs more than most statements of a test.
  static std::map<std::string, Conn> connections;
  auto kept = connections.find(uri);
  if (kept == connections.end() || PQstatus(kept->second.get()) != CONNECTION_OK) {
    const char* keys[] = {"dbname", "options", nullptr};
    const char* values[] = {uri.c_str(), "-c DateStyle=ISO", nullptr};
    connections.erase(uri);
    kept = connections.emplace(uri, Conn(PQconnectdbParams(keys, values, 1), &PQfinish)).first;
  }
  PGconn* db = kept->second.get();
  std::vector<std::vector<std::string>> rows;
  if (!PQsendQuery(db, sql.c_str())) error = PQerrorMessage(db);
  while (PGresult* result = PQgetResult(db)) {
    if (PQresultStatus(result) == PGRES_TUPLES_OK) {
      for (int row = 0; row < PQntuples(result); ++row) {
        auto& texts = rows.emplace_back();
        for (int column = 0; column < PQnfields(result); ++column) {
          texts.push_back(PQgetisnull(result, row, column) ? "NULL"
                                                           : PQgetvalue(result, row, column));
        }
      }
    } else if (PQresultStatus(result) != PGRES_COMMAND_OK && error.empty()) {
      error = PQresultErrorMessage(result);
    }
    PQclear(result);
  }
  return rows;
}

}  // namespace brindlewayProj::store::postgres
