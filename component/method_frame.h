// The mechanisms every public method shares: the failure path, the count-and-narrow step of
// the readers, the row walk, field reads by HasValue, and the key conditions of the queries.
#pragma once

#include <exception>
#include <functional>
#include <new>

#include "component/return_msg.h"
#include "platform/regional.h"
#include <brindleway/collection.h>
#include <brindleway/dao.h>

namespace brindlewayProj::component {

// Runs a method's steps under its failure path. The current failure is cleared first; a
// failure in the steps gives status -1 and a CompError message with the failure's
// description, and then `afterMessage` runs (the rollback of the transaction methods). A
// failure in `afterMessage` leaves the call, with ReturnMsg already written.
template <class Steps, class AfterMessage>
Integer RunUnderFailurePath(const String& methodName, String& ReturnMsg, Steps&& steps,
                            AfterMessage&& afterMessage) {
  platform::ErrObject& err = platform::Err();
  err.Clear();
  try {
    platform::RegionalSettingsHeld oneLocale;
    return steps();
  } catch (const platform::Error& failure) {
    err.Set(failure);
  } catch (const std::bad_alloc&) {
    err.Set(platform::Error(platform::errOutOfMemory));
  } catch (const std::exception& failure) {
    err.Set(platform::Error(platform::errInternal, failure.what()));
  }
  ReturnMsg = ComposeReturnMsg(methodName, 0, Variant::Missing());
  afterMessage();
  return -1;
}

// The failure path of the methods without a transaction.
template <class Steps>
Integer RunUnderFailurePath(const String& methodName, String& ReturnMsg, Steps&& steps) {
  return RunUnderFailurePath(methodName, ReturnMsg, std::forward<Steps>(steps), [] {});
}

// The failure path of the four methods with a transaction: message first, then Rollback on
// the workspace (Nothing raises 91 and leaves the call).
template <class Steps>
Integer RunInTransaction(const String& methodName, String& ReturnMsg,
                         const std::shared_ptr<dao::Workspace>& workspace, Steps&& steps) {
  return RunUnderFailurePath(methodName, ReturnMsg, std::forward<Steps>(steps),
                             [&workspace] { Deref(workspace).Rollback(); });
}

// A Long count narrowed to the Integer status; above 32767 raises 6 "Overflow".
Integer NarrowCount(Long count);

// Counts a freshly opened recordset: 0 when it has no rows; otherwise MoveLast, the total
// narrowed to an Integer, and MoveFirst, so that the first row is current.
Integer CountRows(dao::Recordset& rows);

// The message of a counting reader: "Found n records" at CompInfo, or for 0 the warning
// "Did not find any records".
void ReportCount(const String& methodName, String& ReturnMsg, Integer count);

// The start of every counting reader: opens `query` as a snapshot into `rows` (before anything
// is read from it), counts it with CountRows and reports the count. Answers the count.
Integer OpenCountAndReport(const String& methodName, String& ReturnMsg, dao::Database& database,
                           const String& query, std::shared_ptr<dao::Recordset>& rows);

// The road of the readers that hand back one row: opens, counts and reports as above, and
// when rows are found lets `readFirstRow` read the first one. Answers the count.
template <class ReadFirstRow>
Integer ReadFirstRowOf(const String& methodName, String& ReturnMsg, dao::Database& database,
                       const String& query, ReadFirstRow&& readFirstRow) {
  std::shared_ptr<dao::Recordset> rows;
  Integer count = OpenCountAndReport(methodName, ReturnMsg, database, query, rows);
  if (count > 0) readFirstRow(static_cast<const dao::Recordset&>(Deref(rows)));
  return count;
}

// Walks from the current row to the end: `row()` for each row, then MoveNext; Eof is read
// before each row.
template <class Row>
void ForEachRow(dao::Recordset& rows, Row&& row) {
  while (!rows.Eof()) {
    row();
    rows.MoveNext();
  }
}

// The road of the readers that copy rows into the caller's Collection, under the failure path:
// opens and counts as above, and only when rows are found runs `prepare` (which empties the
// collection) and then adds `rowText(rows)` for each row, the text made before each Add.
// Answers the count.
Integer ReadRowsInto(const String& methodName, String& ReturnMsg,
                     const std::shared_ptr<dao::Database>& database, const String& query,
                     const std::shared_ptr<Collection>& target,
                     const std::function<void()>& prepare,
                     const std::function<String(const dao::Recordset&)>& rowText);

// HasValue on the named Field of the current row (the Field is fetched anew for each use).
bool FieldHasValue(const dao::Recordset& rows, const String& name);
// The named field's Value in the current row.
Variant FieldValue(const dao::Recordset& rows, const String& name);
// A listing's text of a field: its value as String, or "<Empty>" when it has no value.
String FieldTextOrEmpty(const dao::Recordset& rows, const String& name);
// Writes the named field's value, converted by `convert`, into `out` only when the field has a
// value; otherwise `out` keeps what it held.
template <class T>
void ReadFieldIfValue(const dao::Recordset& rows, const String& name, T& out,
                      T (*convert)(const Variant&)) {
  if (FieldHasValue(rows, name)) out = convert(FieldValue(rows, name));
}

// "Where ( [Field] = n )" and "Where ( [Field1] = n AND [Field2] = m )".
String KeyCondition(const String& field, Long key);
String KeyCondition(const String& field1, Long key1, const String& field2, Long key2);

}  // namespace brindlewayProj::component
