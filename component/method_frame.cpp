// Counting, reporting and field reads shared by the readers; key conditions of the queries.
#include "component/method_frame.h"

#include <brindleway/brindleway.h>
#include "dataaccess/resolved_value.h"

namespace brindlewayProj::component {

Integer NarrowCount(Long count) { return CInt(Variant(count)); }

Integer CountRows(dao::Recordset& rows) {
  if (rows.RecordCount() < 1) return 0;
  rows.MoveLast(0);
  Integer count = NarrowCount(rows.RecordCount());
  rows.MoveFirst();
  return count;
}

void ReportCount(const String& methodName, String& ReturnMsg, Integer count) {
  if (count > 0) {
    ReturnMsg = ComposeReturnMsg(methodName, brindleway::CompInfo,
                                 "Found " + std::to_string(count) + " records");
  } else {
    ReturnMsg = ComposeReturnMsg(methodName, brindleway::CompWarning, "Did not find any records");
  }
}

Integer OpenCountAndReport(const String& methodName, String& ReturnMsg, dao::Database& database,
                           const String& query, std::shared_ptr<dao::Recordset>& rows) {
  rows = database.OpenRecordset(query, dao::dbOpenSnapshot);
  Integer count = CountRows(Deref(rows));
  ReportCount(methodName, ReturnMsg, count);
  return count;
}

Integer ReadRowsInto(const String& methodName, String& ReturnMsg,
                     const std::shared_ptr<dao::Database>& database, const String& query,
                     const std::shared_ptr<Collection>& target,
                     const std::function<void()>& prepare,
                     const std::function<String(const dao::Recordset&)>& rowText) {
  return RunUnderFailurePath(methodName, ReturnMsg, [&]() -> Integer {
    std::shared_ptr<dao::Recordset> recordset;
    const Integer count =
        OpenCountAndReport(methodName, ReturnMsg, Deref(database), query, recordset);
    if (count == 0) return 0;
    prepare();
    dao::Recordset& rows = Deref(recordset);
    ForEachRow(rows, [&] {
      const String text = rowText(rows);
      Deref(target).Add(text);
    });
    return count;
  });
}

bool FieldHasValue(const dao::Recordset& rows, const String& name) {
  Variant field(Deref(rows.Fields()).Item(name));
  return HasValue(field);
}

Variant FieldValue(const dao::Recordset& rows, const String& name) {
  return Deref(Deref(rows.Fields()).Item(name)).Value();
}

String FieldTextOrEmpty(const dao::Recordset& rows, const String& name) {
  const Variant value = FieldValue(rows, name);
  return IsGivenValue(value) ? CStr(value) : String("<Empty>");
}

String KeyCondition(const String& field, Long key) {
  return "Where ( [" + field + "] = " + std::to_string(key) + " )";
}

String KeyCondition(const String& field1, Long key1, const String& field2, Long key2) {
  return "Where ( [" + field1 + "] = " + std::to_string(key1) + " AND [" + field2 +
         "] = " + std::to_string(key2) + " )";
}

}  // namespace brindlewayProj::component
