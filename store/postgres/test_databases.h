// Test-only: throw-away PostgreSQL databases for the tests that run on this engine, and SQL run
// straight on one. The server is the one libpq's environment names (PGHOST, PGPORT, PGUSER,
// PGPASSWORD, PGDATABASE), as pg_virtualenv sets it.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace brindlewayProj::store::postgres {

// Why no server answers, or nullopt when one does.
std::optional<std::string> ServerMissingForTesting();

// A new database with the reference schema (and the sample data when asked), cloned from a
// template database that the first call per schema version makes; answers its URI.
std::string CreateDatabaseForTesting(bool withSample);

// Drops the database of `uri`, ending its other connections.
void DropDatabaseForTesting(const std::string& uri);

// Runs `sql` (one or more statements) on a connection of its own (kept for the next call) and answers their rows with every column as text ("NULL" for NULL); a failure sets `error`.
std::vector<std::vector<std::string>> RunSqlForTesting(const std::string& uri,
                                                       const std::string& sql, std::string& error);

}  // namespace brindlewayProj::store::postgres
