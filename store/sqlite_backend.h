// The embedded SQLite backend: WAL journal, synchronous=FULL, foreign keys on, a busy
// timeout of five seconds, the file opened shared for reading and writing.
#pragma once

#include "store/backend.h"

namespace brindlewayProj::store {

inline constexpr int kBusyTimeoutMilliseconds = 5000;

std::shared_ptr<Connection> OpenSqliteConnection(const std::filesystem::path& file);

}  // namespace brindlewayProj::store
