// Adding, editing and deleting rows: the roads shared by the writing methods.
#include "component/row_changes.h"

#include <brindleway/brindleway.h>
#include "component/method_frame.h"

namespace brindlewayProj::component {

Integer AddRowAndCommit(const String& methodName, String& ReturnMsg,
                        const std::shared_ptr<dao::Workspace>& workspace,
                        const std::shared_ptr<dao::Database>& database, const String& table,
                        const std::function<void(dao::Recordset&)>& fill) {
  std::shared_ptr<dao::Recordset> opened = Deref(database).OpenRecordset(table, dao::dbOpenDynaset);
  dao::Recordset& row = Deref(opened);
  row.AddNew();
  fill(row);
  row.Update(dao::dbUpdateRegular, false);
  Deref(workspace).CommitTrans(0);
  ReturnMsg = ComposeReturnMsg(methodName, brindleway::CompInfo, "Success");
  return 0;
}

Integer EditFirstRowAndCommit(const String& methodName, String& ReturnMsg,
                              const std::shared_ptr<dao::Workspace>& workspace,
                              const std::shared_ptr<dao::Database>& database, const String& query,
                              const std::function<void(dao::Recordset&)>& write) {
  std::shared_ptr<dao::Recordset> opened = Deref(database).OpenRecordset(query, dao::dbOpenDynaset);
  dao::Recordset& rows = Deref(opened);
  if (rows.RecordCount() == 0) {
    Deref(workspace).Rollback();
    ReturnMsg =
        ComposeReturnMsg(methodName, brindleway::CompInfo, "No records found. Nothing to update");
    return 0;
  }
  rows.Edit();
  write(rows);
  rows.Update(dao::dbUpdateRegular, false);
  Deref(workspace).CommitTrans(0);
  Integer count = NarrowCount(rows.RecordCount());
  ReturnMsg = ComposeReturnMsg(methodName, brindleway::CompInfo, "Success");
  return count;
}

Integer DeleteRows(const String& methodName, String& ReturnMsg,
                   const std::shared_ptr<dao::Database>& database, const String& statement) {
  dao::Database& target = Deref(database);
  target.Execute(statement, dao::dbFailOnError);
  if (target.RecordsAffected() <= 0) {
    ReturnMsg = ComposeReturnMsg(methodName, brindleway::CompError, "No records found");
    return 0;
  }
  Integer count = NarrowCount(target.RecordsAffected());
  ReturnMsg = ComposeReturnMsg(methodName, brindleway::CompInfo,
                               std::to_string(count) + " records deleted");
  return count;
}

}  // namespace brindlewayProj::component
