// PostgreSQL failures as the backend's failures.
#pragma once

#include <libpq-fe.h>

#include <string_view>

#include "store/backend.h"

namespace brindlewayProj::store::postgres {

// The failure kind of a SQLSTATE.
FailureKind KindOf(std::string_view sqlState);

// Raises the BackendError of a failed result (or of the connection, without one); clears
// `result`.
[[noreturn]] void Fail(PGconn* db, PGresult* result);

// Whether a result reports success (a command done, or rows).
bool Succeeded(const PGresult* result);

// Runs a statement without values on `db` (transaction control), raising its failure.
void Run(PGconn* db, const char* sql);

}  // namespace brindlewayProj::store::postgres
