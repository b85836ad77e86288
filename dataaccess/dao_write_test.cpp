// Writing through dynasets and Execute, where the component's own paths do not reach: edits
// dropped by Rollback or by releasing the recordset, what may not be changed, a row changed
// by someone else, and the workspace's one transaction.
#include <gtest/gtest.h>

#include "dataaccess/dao_test_support.h"
#include "store/errors.h"

namespace brindlewayProj::dao {
namespace {

using WriteTest = StoreTest;

const String kUpdateWithoutEdit = "Update or CancelUpdate without AddNew or Edit.";

TEST_F(WriteTest, RollbackAndReleaseDropAnEditThatWasNotStored) {
  Workspace().BeginTrans();
  auto orders = Dynaset("Orders");
  orders->AddNew();
  orders->Collect("CustomerId", Variant(Long{1}));
  Workspace().Rollback();
  EXPECT_STORE_ERROR(orders->Update(), store::errUpdateWithoutEdit, kUpdateWithoutEdit);
  {
    auto first = Dynaset("Select * From [Orders] Where ( [OrderId] = 1 )");
    first->Edit();
    first->Collect("Description", Variant("changed"));
    orders->AddNew();
    orders->Collect("CustomerId", Variant(Long{2}));
  }
  orders.reset();
  EXPECT_EQ(Count("Select * From [Orders] Where [Description] = \"Birthday parcel\""), 1);
  EXPECT_EQ(Count("Orders"), 5);
}

// A dynaset over a whole table reads its rows when first asked; a row it added before that
// stands where it would have stood had the rows been read at opening.
TEST_F(WriteTest, ARowAddedBeforeTheFirstReadStandsWhereItWouldHave) {
  std::vector<String> walks[2];
  for (bool readFirst : {true, false}) {
    Workspace().BeginTrans();
    auto orders = Dynaset("Orders");
    if (readFirst) orders->RecordCount();
    orders->AddNew();
    orders->Collect("CustomerId", Variant(Long{1}));
    orders->Collect("Description", Variant("added"));
    orders->Update();
    auto& walk = walks[readFirst];
    walk.push_back(std::to_string(orders->RecordCount()));
    for (orders->MoveFirst(); !orders->Eof(); orders->MoveNext()) {
      Variant description = Value(*orders, "Description");
      walk.push_back(IsNull(description) ? "Null" : CStr(description));
    }
    Workspace().Rollback();
  }
  EXPECT_EQ(walks[0].size(), 7u);  // RecordCount, then the five rows and the added one
  EXPECT_EQ(walks[0], walks[1]);
}

TEST_F(WriteTest, ChangesOnlyWhatMayBeChanged) {
  const String readOnly = "Cannot update. Database or object is read-only.";
  EXPECT_STORE_ERROR(Snapshot("Orders")->Edit(), store::errNotSupported,
                     "Operation is not supported for this type of object.");
  EXPECT_STORE_ERROR(Dynaset("Select * From [OrdersWithNames]")->AddNew(), store::errReadOnly,
                     readOnly);
  auto orders = Dynaset("Orders");
  orders->Edit();
  EXPECT_THROW(orders->Collect("CustomerId", Variant("twelve")), platform::Error);
  EXPECT_STORE_ERROR(orders->Collect("Colour", Variant(Long{1})), store::errItemNotFound,
                     "Item not found in this collection.");
  EXPECT_STORE_ERROR(Db().Execute("Select * From [Orders]", dbFailOnError),
                     store::errCannotExecuteSelect, "Cannot execute a select query.");
  EXPECT_STORE_ERROR(Db().Execute("Delete From [OrdersWithNames]", dbFailOnError),
                     store::errReadOnly, readOnly);
}

TEST_F(WriteTest, UpdateRefusesARowChangedBySomeoneElseSinceEdit) {
  auto orders = Dynaset("Select * From [Orders] Where ( [OrderId] = 2 )");
  orders->Edit();
  orders->Collect("Delivery", Variant(Integer{1}));
  testing::SqlRows(file_, "UPDATE Orders SET Description = 'theirs' WHERE OrderId = 2");
  EXPECT_STORE_ERROR(orders->Update(dbUpdateRegular, false), store::errConflict,
                     "The database engine stopped the process because you and another user are "
                     "attempting to change the same data at the same time.");
  EXPECT_EQ(Count("Select * From [Orders] Where [Delivery] = 0 And [OrderId] = 2"), 1);
}

// Inside a transaction no one else writes, so Edit may take the row as it was read; not once
// this workspace has written since: another recordset's change shows, a deleted row is gone.
TEST_F(WriteTest, EditSeesWhatTheWorkspaceWroteSinceTheRowWasRead) {
  const String second = "Select * From [Orders] Where ( [OrderId] = 2 )";
  Workspace().BeginTrans();
  auto order = Dynaset(second), same = Dynaset(second);
  same->Edit();
  same->Collect("Description", Variant("changed"));
  same->Update();
  order->Edit();
  EXPECT_EQ(CStr(Value(*order, "Description")), "changed");
  order->Collect("Delivery", Variant(Integer{1}));
  order->Update();
  Db().Execute("Delete From [OrderBasket] Where [OrderId] = 2", dbFailOnError);
  Db().Execute("Delete From [Orders] Where [OrderId] = 2", dbFailOnError);
  EXPECT_STORE_ERROR(order->Edit(), store::errRecordDeleted, "Record is deleted.");
  Workspace().Rollback();
}

// Transactions nest: an inner Rollback undoes only its own level, and only the outermost
// CommitTrans makes changes lasting.
TEST_F(WriteTest, TransactionsMustBeBegunAndNest) {
  const String noTransaction =
      "You tried to commit or rollback a transaction without first beginning a transaction.";
  EXPECT_STORE_ERROR(Workspace().CommitTrans(), store::errNoTransaction, noTransaction);
  EXPECT_STORE_ERROR(Workspace().Rollback(), store::errNoTransaction, noTransaction);
  Workspace().BeginTrans();
  Db().Execute("Delete From [OrderBasket] Where [OrderId] = 1", dbFailOnError);
  Workspace().BeginTrans();
  Db().Execute("Delete From [OrderBasket] Where [OrderId] = 2", dbFailOnError);
  Workspace().Rollback();
  EXPECT_EQ(Count("Select * From [OrderBasket] Where [OrderId] < 4"), 5);  // orders 2 and 3
  Workspace().BeginTrans();
  auto second = Workspace().OpenDatabase(file_.string());  // shares the transaction
  second->Execute("Delete From [OrderBasket] Where [OrderId] = 3", dbFailOnError);
  Workspace().CommitTrans();
  Workspace().CommitTrans();
  EXPECT_EQ(Count("Select * From [OrderBasket] Where [OrderId] < 4"), 3);  // order 2's rows
  EXPECT_STORE_ERROR(Workspace().Rollback(), store::errNoTransaction, noTransaction);
  second->Close();
  EXPECT_STORE_ERROR(second->OpenRecordset("Orders"), store::errObjectInvalid,
                     "Object invalid or no longer set.");
}

}  // namespace
}  // namespace brindlewayProj::dao
