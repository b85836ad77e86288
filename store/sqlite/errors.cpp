// SQLite result codes mapped onto the backend's failure kinds.
#include "store/sqlite/errors.h"

namespace brindlewayProj::store::sqlite {

FailureKind KindOf(int code) {
  switch (code) {
    case SQLITE_CONSTRAINT_FOREIGNKEY:
      return FailureKind::kForeignKey;
    case SQLITE_CONSTRAINT_NOTNULL:
      return FailureKind::kNotNull;
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
      return FailureKind::kUnique;
    default:
      break;
  }
  switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return FailureKind::kBusy;
    case SQLITE_FULL:
      return FailureKind::kFull;
    case SQLITE_READONLY:
      return FailureKind::kReadOnly;
    case SQLITE_NOTADB:
      return FailureKind::kNotADatabase;
    case SQLITE_CANTOPEN:
      return FailureKind::kCantOpen;
    default:
      return FailureKind::kOther;
  }
}

void Fail(sqlite3* db, int code) {
  std::string message = db ? sqlite3_errmsg(db) : sqlite3_errstr(code);
  std::string detail;
  if (code == SQLITE_CONSTRAINT_NOTNULL) {  // "NOT NULL constraint failed: Table.Column"
    detail = message.substr(message.find_last_of(".:") + 1);
  }
  throw BackendError(KindOf(code), message, detail, code);
}

}  // namespace brindlewayProj::store::sqlite
