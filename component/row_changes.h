// The shared roads of the methods that change stored rows: adding one row, editing the first
// row a query finds, and deleting by one statement. Each runs inside its method's failure path;
// the first two also inside the transaction that the method began.
#pragma once

#include <functional>
#include <memory>

#include <brindleway/dao.h>

namespace brindlewayProj::component {

// Fills and stores one new row of `table`, then commits: AddNew on a dynaset of the table,
// `fill` writes the fields, Update, CommitTrans. Answers 0 with "Success" at CompInfo.
Integer AddRowAndCommit(const String& methodName, String& ReturnMsg,
                        const std::shared_ptr<dao::Workspace>& workspace,
                        const std::shared_ptr<dao::Database>& database, const String& table,
                        const std::function<void(dao::Recordset&)>& fill);

// Edits the first row of the dynaset `query`: Edit, `write` sets the fields, Update, CommitTrans,
// then the dynaset's RecordCount (the rows reached, so 1) with "Success" at CompInfo. Without a
// row it rolls back first and then answers 0 with "No records found. Nothing to update".
Integer EditFirstRowAndCommit(const String& methodName, String& ReturnMsg,
                              const std::shared_ptr<dao::Workspace>& workspace,
                              const std::shared_ptr<dao::Database>& database, const String& query,
                              const std::function<void(dao::Recordset&)>& write);

// Runs the delete `statement` all or nothing and answers the rows deleted with "n records
// deleted" at CompInfo; none deleted answers 0 with "No records found" at CompError. Above 32767
// deleted rows the narrowing overflows, with the rows gone.
Integer DeleteRows(const String& methodName, String& ReturnMsg,
                   const std::shared_ptr<dao::Database>& database, const String& statement);

}  // namespace brindlewayProj::component
