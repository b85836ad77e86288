// The store's failures: error numbers in the 3000 range and their texts, in the words of a
// classic desktop database engine. Every store failure that reaches a caller is built here.
#pragma once

#include <brindleway/error.h>

namespace brindlewayProj::store {

enum StoreErrorNumber : Long {
  errInvalidArgument = 3001,
  errCannotExecuteSelect = 3065,
  errRecordDeleted = 3167,
  errObjectInvalid = 3420,
  errNoCurrentRecord = 3021,
  errUpdateWithoutEdit = 3020,
  errDuplicateKey = 3022,
  errFileNotFound = 3024,
  errConnectionFailed = 3151,
  errDiskFull = 3026,
  errReadOnly = 3027,
  errNoTransaction = 3034,
  errInvalidPath = 3044,
  errUnknownName = 3061,
  errSyntax = 3075,
  errTableNotFound = 3078,
  errFromClause = 3131,
  errConflict = 3197,
  errRelatedRecordsExist = 3200,
  errRelatedRecordRequired = 3201,
  errAlreadyExists = 3204,
  errLocked = 3218,
  errNotSupported = 3251,
  errItemNotFound = 3265,
  errRequiredField = 3314,
  errUnrecognizedFormat = 3343,
  errEngine = 3000,  // any other failure of the backend, with its own message
};

platform::Error EmptyPath();
platform::Error InvalidArgument();
platform::Error CannotExecuteSelect();
platform::Error RecordDeleted();
platform::Error ObjectInvalid();
platform::Error NoCurrentRecord();
platform::Error UpdateWithoutEdit();
platform::Error DuplicateKey();
platform::Error FileNotFound(const String& path);
// `store` and `reason` free of any password.
platform::Error CannotConnect(const String& store, const String& reason);
platform::Error DiskFull();
platform::Error ReadOnly();
platform::Error NoTransaction();
platform::Error InvalidPath(const String& path);
platform::Error UnknownNames(int count);
platform::Error SyntaxError(const String& offendingText);
platform::Error FromClauseError();
platform::Error TableNotFound(const String& name);
platform::Error WriteConflict();
platform::Error RelatedRecordsExist();
platform::Error RelatedRecordRequired(const String& table);
platform::Error AlreadyExists(const String& path);
platform::Error Locked();
platform::Error NotSupported();
platform::Error ItemNotFound();
platform::Error RequiredField(const String& field);
platform::Error UnrecognizedFormat(const String& path);
platform::Error EngineFailure(const String& message);

}  // namespace brindlewayProj::store
