// Writes a new store file: the file is created exclusively, so an existing one is never touched;
// a failure after that removes the half-made file again.
#include "store/schema.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>

#include "store/errors.h"
#include "store/schema_sql.h"

namespace brindlewayProj::store {
namespace {

// Creates the empty file, refusing one that exists (an empty file is a valid empty database).
void CreateEmptyFile(const std::filesystem::path& file) {
  int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  if (descriptor < 0) {
    if (errno == EEXIST) throw AlreadyExists(file.string());
    throw InvalidPath(file.string());
  }
  ::close(descriptor);
}

void WriteSchema(const std::filesystem::path& file, bool withSample) {
  sqlite3* db = nullptr;
  int rc = sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
  std::string script = "PRAGMA journal_mode=WAL; BEGIN;";
  script += kSchemaSql;
  if (withSample) script += kSampleSql;
  script += "COMMIT;";
  char* message = nullptr;
  if (rc == SQLITE_OK) rc = sqlite3_exec(db, script.c_str(), nullptr, nullptr, &message);
  String failure = message ? message : (db ? sqlite3_errmsg(db) : "out of memory");
  sqlite3_free(message);
  sqlite3_close_v2(db);
  if (rc != SQLITE_OK) throw EngineFailure(failure);
}

}  // namespace

void CreateStore(const std::filesystem::path& file, bool withSample) {
  if (file.empty()) throw EmptyPath();
  CreateEmptyFile(file);
  try {
    WriteSchema(file, withSample);
  } catch (...) {
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    std::filesystem::remove(file.string() + "-wal", ignored);
    std::filesystem::remove(file.string() + "-shm", ignored);
    throw;
  }
}

}  // namespace brindlewayProj::store
