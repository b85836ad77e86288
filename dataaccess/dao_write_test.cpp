// Writing through dynasets and Execute, inside and outside the workspace's transaction.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "dataaccess/dao_test_support.h"
#include "store/errors.h"

namespace brindlewayProj::dao {
namespace {

using WriteTest = StoreTest;

const String kDuplicatePair =
    "Select * From [OrderBasket] Where ( [OrderId] = 4 AND [ProductId] = 5 )";

TEST_F(WriteTest, EditChangesTheFirstOfTwoMatchingRowsOnly) {
  auto before = Snapshot(kDuplicatePair);
  std::vector<Long> quantities;
  for (; !before->Eof(); before->MoveNext()) quantities.push_back(CLng(Value(*before, "Quantity")));
  ASSERT_EQ(quantities.size(), 2u);

  Workspace().BeginTrans();
  auto basket = Dynaset(kDuplicatePair);
  basket->Edit();
  basket->Collect("Quantity", Variant(Long{40}));
  basket->Update(dbUpdateRegular, false);
  EXPECT_EQ(basket->RecordCount(), 1);
  Workspace().CommitTrans();
  EXPECT_EQ(basket->RecordCount(), 1);
  EXPECT_EQ(CLng(Value(*basket, "Quantity")), 40);

  auto after = Snapshot(kDuplicatePair);
  EXPECT_EQ(CLng(Value(*after, "Quantity")), 40);
  after->MoveNext();
  EXPECT_EQ(CLng(Value(*after, "Quantity")), quantities[1]);
}

TEST_F(WriteTest, AddNewShowsTheKeyThatUpdateStores) {
  Workspace().BeginTrans();
  auto orders = Dynaset("Orders");
  orders->MoveLast();
  Long countBefore = orders->RecordCount();
  orders->AddNew();
  orders->Collect("CustomerId", Variant(Long{3}));
  orders->Collect("Delivery", Variant(Integer{0}));
  orders->Collect("OrderDate", Variant(DateSerial(2026, 7, 4)));
  orders->Collect("Description", Variant("Picnic"));
  Long key = CLng(Value(*orders, "OrderId"));
  orders->Update();
  Workspace().CommitTrans();
  EXPECT_EQ(key, 6);
  EXPECT_EQ(orders->RecordCount(), countBefore + 1);

  auto stored = Snapshot("Select * From [OrdersWithNames] Where ( [OrderId] = 6 )");
  ASSERT_EQ(stored->RecordCount(), 1);
  EXPECT_EQ(CStr(Value(*stored, "LastName")), "Ostrem");
  EXPECT_EQ(CDate(Value(*stored, "OrderDate")), DateSerial(2026, 7, 4));
  EXPECT_TRUE(IsNull(Value(*stored, "DeliveryDate")));
}

TEST_F(WriteTest, RolledBackAddNewLeavesNoRowWithItsKey) {
  Workspace().BeginTrans();
  auto orders = Dynaset("Orders");
  orders->AddNew();
  orders->Collect("CustomerId", Variant(Long{1}));
  Long key = CLng(Value(*orders, "OrderId"));
  orders->Update();
  Workspace().Rollback();
  EXPECT_STORE_ERROR(orders->Update(), store::errUpdateWithoutEdit,
                     "Update or CancelUpdate without AddNew or Edit.");
  EXPECT_EQ(Count("Select * From [Orders] Where [OrderId] = " + std::to_string(key)), 0);

  Workspace().BeginTrans();
  orders->AddNew();  // an edit still open at Rollback is dropped with it
  orders->Collect("CustomerId", Variant(Long{1}));
  Workspace().Rollback();
  EXPECT_STORE_ERROR(orders->Update(), store::errUpdateWithoutEdit,
                     "Update or CancelUpdate without AddNew or Edit.");
  EXPECT_EQ(Count("Orders"), 5);
}

TEST_F(WriteTest, ReleasingTheRecordsetDropsAnUnstoredEdit) {
  {
    auto orders = Dynaset("Select * From [Orders] Where ( [OrderId] = 1 )");
    orders->Edit();
    orders->Collect("Description", Variant("changed"));
  }
  {
    auto orders = Dynaset("Orders");
    orders->AddNew();
    orders->Collect("CustomerId", Variant(Long{2}));
  }
  EXPECT_EQ(Count("Select * From [Orders] Where [Description] = \"Birthday parcel\""), 1);
  EXPECT_EQ(Count("Orders"), 5);
}

TEST_F(WriteTest, ChangesOnlyWhatMayBeChanged) {
  auto snapshot = Snapshot("Orders");
  EXPECT_STORE_ERROR(snapshot->Edit(), store::errNotSupported,
                     "Operation is not supported for this type of object.");
  auto view = Dynaset("Select * From [OrdersWithNames]");
  EXPECT_STORE_ERROR(view->AddNew(), store::errReadOnly,
                     "Cannot update. Database or object is read-only.");
  auto orders = Dynaset("Orders");
  EXPECT_STORE_ERROR(orders->Update(), store::errUpdateWithoutEdit,
                     "Update or CancelUpdate without AddNew or Edit.");
  orders->Edit();
  EXPECT_THROW(orders->Collect("CustomerId", Variant("twelve")), platform::Error);
  EXPECT_STORE_ERROR(orders->Collect("Colour", Variant(Long{1})), store::errItemNotFound,
                     "Item not found in this collection.");
}

TEST_F(WriteTest, UpdateRefusesARowChangedBySomeoneElseSinceEdit) {
  auto orders = Dynaset("Select * From [Orders] Where ( [OrderId] = 2 )");
  orders->Edit();
  orders->Collect("Delivery", Variant(Integer{1}));
  sqlite3* other = nullptr;
  sqlite3_open(file_.c_str(), &other);
  sqlite3_busy_timeout(other, 5000);
  ASSERT_EQ(sqlite3_exec(other, "UPDATE Orders SET Description = 'theirs' WHERE OrderId = 2",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  sqlite3_close(other);
  EXPECT_STORE_ERROR(orders->Update(dbUpdateRegular, false), store::errConflict,
                     "The database engine stopped the process because you and another user are "
                     "attempting to change the same data at the same time.");
  EXPECT_EQ(Count("Select * From [Orders] Where [Delivery] = 0 And [OrderId] = 2"), 1);
}

TEST_F(WriteTest, ReferencesTheTableRefusesNameTheirTable) {
  auto basket = Dynaset("OrderBasket");
  basket->AddNew();
  basket->Collect("OrderId", Variant(Long{1}));
  basket->Collect("ProductId", Variant(Long{999}));
  basket->Collect("Quantity", Variant(Long{1}));
  EXPECT_STORE_ERROR(basket->Update(), store::errRelatedRecordRequired,
                     "You cannot add or change a record because a related record is required in "
                     "table 'Products'.");
  basket->Collect("ProductId", Variant(Long{1}));
  basket->Collect("OrderId", Variant(Long{999}));
  EXPECT_STORE_ERROR(basket->Update(), store::errRelatedRecordRequired,
                     "You cannot add or change a record because a related record is required in "
                     "table 'Orders'.");
  EXPECT_STORE_ERROR(Db().Execute("Delete From [Products] Where [ProductId] = 1", dbFailOnError),
                     store::errRelatedRecordsExist,
                     "The record cannot be deleted or changed because another table includes "
                     "related records.");
  EXPECT_EQ(Count("Products"), 10);
}

TEST_F(WriteTest, ExecuteCountsTheRowsOfItsOwnStatement) {
  Db().Execute("Delete From [Orders] Where ( [OrderId] = 999 )", dbFailOnError);
  EXPECT_EQ(Db().RecordsAffected(), 0);
  Db().Execute("Delete From [Orders] Where ( [OrderId] = 1 )", dbFailOnError);
  EXPECT_EQ(Db().RecordsAffected(), 1);  // its three basket rows go too, uncounted
  EXPECT_EQ(Count("Select * From [OrderBasket] Where [OrderId] = 1"), 0);
  EXPECT_STORE_ERROR(Db().Execute("Select * From [Orders]", dbFailOnError),
                     store::errCannotExecuteSelect, "Cannot execute a select query.");
  EXPECT_STORE_ERROR(Db().Execute("Delete From [OrdersWithNames]", dbFailOnError),
                     store::errReadOnly, "Cannot update. Database or object is read-only.");
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
