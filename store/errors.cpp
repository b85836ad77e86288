// Texts of the store's failures.
#include "store/errors.h"

namespace brindlewayProj::store {

using platform::Error;

Error EmptyPath() {
  return Error(errInvalidArgument, "Invalid argument: the database name is empty.");
}

Error InvalidArgument() { return Error(errInvalidArgument, "Invalid argument."); }

Error CannotExecuteSelect() {
  return Error(errCannotExecuteSelect, "Cannot execute a select query.");
}

Error RecordDeleted() { return Error(errRecordDeleted, "Record is deleted."); }

Error ObjectInvalid() { return Error(errObjectInvalid, "Object invalid or no longer set."); }

Error NoCurrentRecord() { return Error(errNoCurrentRecord, "No current record."); }

Error UpdateWithoutEdit() {
  return Error(errUpdateWithoutEdit, "Update or CancelUpdate without AddNew or Edit.");
}

Error DuplicateKey() {
  return Error(errDuplicateKey,
               "The changes you requested to the table were not successful because they would "
               "create duplicate values in the index, primary key, or relationship. Change the "
               "data in the field or fields that contain duplicate data, remove the index, or "
               "redefine the index to permit duplicate entries and try again.");
}

Error FileNotFound(const String& path) {
  return Error(errFileNotFound, "Could not find file '" + path + "'.");
}

Error CannotConnect(const String& store, const String& reasonGiven) {
  String reason = reasonGiven;
  while (!reason.empty() && (reason.back() == '\n' || reason.back() == ' ')) reason.pop_back();
  return Error(errConnectionFailed, "Connection to '" + store + "' failed: " + reason);
}

Error DiskFull() { return Error(errDiskFull, "Not enough space on disk."); }

Error ReadOnly() { return Error(errReadOnly, "Cannot update. Database or object is read-only."); }

Error NoTransaction() {
  return Error(errNoTransaction,
               "You tried to commit or rollback a transaction without first beginning a "
               "transaction.");
}

Error InvalidPath(const String& path) {
  return Error(errInvalidPath, "'" + path +
                                   "' is not a valid path. Make sure that the path name is "
                                   "spelled correctly and that the folder exists.");
}

Error UnknownNames(int count) {
  return Error(errUnknownName, "Too few parameters. Expected " + std::to_string(count) + ".");
}

Error SyntaxError(const String& offendingText) {
  return Error(errSyntax, "Syntax error in query expression '" + offendingText + "'.");
}

Error FromClauseError() { return Error(errFromClause, "Syntax error in FROM clause."); }

Error TableNotFound(const String& name) {
  return Error(errTableNotFound, "The database engine cannot find the input table or query '" +
                                     name +
                                     "'. Make sure it exists and that its name is spelled "
                                     "correctly.");
}

Error WriteConflict() {
  return Error(errConflict,
               "The database engine stopped the process because you and another user are "
               "attempting to change the same data at the same time.");
}

Error RelatedRecordsExist() {
  return Error(errRelatedRecordsExist,
               "The record cannot be deleted or changed because another table includes "
               "related records.");
}

Error RelatedRecordRequired(const String& table) {
  return Error(errRelatedRecordRequired,
               "You cannot add or change a record because a related record is required in "
               "table '" +
                   table + "'.");
}

Error AlreadyExists(const String& path) {
  return Error(errAlreadyExists, "Database '" + path + "' already exists.");
}

Error Locked() { return Error(errLocked, "Could not update; currently locked."); }

Error NotSupported() {
  return Error(errNotSupported, "Operation is not supported for this type of object.");
}

Error ItemNotFound() { return Error(errItemNotFound, "Item not found in this collection."); }

Error RequiredField(const String& field) {
  return Error(errRequiredField, "The field '" + field +
                                     "' cannot contain a Null value because the Required "
                                     "property for this field is set to True. Enter a value "
                                     "in this field.");
}

Error UnrecognizedFormat(const String& path) {
  return Error(errUnrecognizedFormat, "Unrecognized database format '" + path + "'.");
}

Error EngineFailure(const String& message) { return Error(errEngine, message); }

}  // namespace brindlewayProj::store
