// SQLite result codes as the backend's failures.
#pragma once

#include <sqlite3.h>

#include "store/backend.h"

namespace brindlewayProj::store::sqlite {

// The failure kind of an (extended) SQLite result code.
FailureKind KindOf(int code);

// Raises the BackendError of `code` with the connection's message (or the code's own text
// without a connection).
[[noreturn]] void Fail(sqlite3* db, int code);

}  // namespace brindlewayProj::store::sqlite
