// The object model on a store. Reading through recordsets: counts, walking both ways, field
// kinds and names, the failures of a query that names what is not there, and a recordset that
// outlives its database. Writing through dynasets and Execute, where the component's own paths
// do not reach: edits dropped by Rollback or by releasing the recordset, what may not be
// changed, a row changed by someone else, and the workspace's one transaction. Failures from
// below the object model: files that cannot be opened and a store held by a writer elsewhere,
// each with the store's exact error (failures injected into the backend are checked through the
// component's methods, in tests/transaction_test.cpp).
#include <gtest/gtest.h>

#include <fstream>

#include "dataaccess/dao_test_support.h"
#include "store/backend.h"
#include "store/errors.h"

namespace brindlewayProj::dao {
namespace {

// A dynaset counts the rows reached, as a snapshot does; past the last row only MovePrevious
// leads back. Without rows there is no current record.
TEST_F(StoreTest, CountsRowsReachedAndWalksBothWays) {
  auto recordset = Dynaset("Select [ProductName] From [BasketList] Where ( [OrderId] = 2 )");
  EXPECT_EQ(recordset->RecordCount(), 1);
  recordset->MoveLast();
  EXPECT_EQ(recordset->RecordCount(), 3);
  recordset->MoveNext();
  EXPECT_TRUE(recordset->Eof());
  EXPECT_STORE_ERROR(recordset->MoveNext(), store::errNoCurrentRecord, "No current record.");
  recordset->MovePrevious();
  recordset->MoveFirst();
  EXPECT_EQ(recordset->RecordCount(), 3);
  auto none = Snapshot("Select [ProductName] From [BasketList] Where ( [OrderId] = 999 )");
  EXPECT_TRUE(none->RecordCount() == 0 && none->Eof() && none->Bof());
  EXPECT_STORE_ERROR(none->MoveLast(), store::errNoCurrentRecord, "No current record.");
  EXPECT_STORE_ERROR(Value(*none, "ProductName"), store::errNoCurrentRecord, "No current record.");
}

TEST_F(StoreTest, FieldKindsFollowTheDeclaredTypes) {
  auto order = Snapshot(
      "Select [Description], [Delivery], [DeliveryDate], [OrderDate], [OrderId] From "
      "[OrdersWithNames] Where ( [OrderId] = 2 )");
  auto& fields = *order->Fields();
  EXPECT_EQ(fields.Count(), 5);
  EXPECT_EQ(fields.Item(Long{4})->Name(), "OrderId");
  EXPECT_EQ(VarType(Value(*order, "OrderId")), vbLong);
  EXPECT_EQ(VarType(Value(*order, "Delivery")), vbInteger);
  EXPECT_EQ(CDate(Value(*order, "OrderDate")), DateSerial(2026, 5, 17));
  EXPECT_TRUE(IsNull(Value(*order, "DeliveryDate")));
  EXPECT_TRUE(IsNull(Variant(fields.Item("DeliveryDate"))));  // a Field is looked through
  EXPECT_EQ(VarType(Value(*order, "Description")), vbString);
  EXPECT_EQ(fields.Item("OrderId"), fields.Item("ORDERID"));  // one Field object per column
  EXPECT_STORE_ERROR(fields.Item("Nothing"), store::errItemNotFound,
                     "Item not found in this collection.");

  auto line = Snapshot(
      "Select [ProductName], [Vendor], [ProductPrice], [Quantity], [Extended Price] From "
      "[BasketList] Where ( [OrderId] = 1 ) Order By [ProductName]");
  EXPECT_EQ(VarType(Value(*line, "ProductPrice")), vbDouble);
  EXPECT_EQ(VarType(Value(*line, "Quantity")), vbLong);
  EXPECT_DOUBLE_EQ(CDbl(Value(*line, "Extended Price")), 15.0);
}

TEST_F(StoreTest, UnknownSourcesAndNamesFailInTheStoreWords) {
  for (const char* source : {"Select * From [Shipments]", "Shipments"}) {
    EXPECT_STORE_ERROR(Snapshot(source), store::errTableNotFound,
                       "The database engine cannot find the input table or query 'Shipments'. "
                       "Make sure it exists and that its name is spelled correctly.");
  }
  EXPECT_STORE_ERROR(Snapshot("Select [Colour] From [Orders] Where [Size] = 1 Or [size] = 2"),
                     store::errUnknownName, "Too few parameters. Expected 2.");
  EXPECT_STORE_ERROR(Db().OpenRecordset("Orders", 7), store::errInvalidArgument,
                     "Invalid argument.");
}

// A recordset held after its database went stays usable until it is closed; a field fetched
// from it fails with it.
TEST_F(StoreTest, StaysUsableWhileHeldAndClosesOnRequest) {
  auto recordset = Snapshot("Select [ProductName] From [BasketList] Where ( [OrderId] = 1 )");
  auto field = recordset->Fields()->Item("ProductName");
  db_.reset();
  recordset->MoveLast();
  EXPECT_EQ(recordset->RecordCount(), 3);
  recordset->Close();
  EXPECT_STORE_ERROR(field->Value(), store::errObjectInvalid, "Object invalid or no longer set.");
}

const String kUpdateWithoutEdit = "Update or CancelUpdate without AddNew or Edit.";

TEST_F(StoreTest, RollbackAndReleaseDropAnEditThatWasNotStored) {
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
TEST_F(StoreTest, ARowAddedBeforeTheFirstReadStandsWhereItWouldHave) {
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

TEST_F(StoreTest, ChangesOnlyWhatMayBeChanged) {
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

TEST_F(StoreTest, UpdateRefusesARowChangedBySomeoneElseSinceEdit) {
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
TEST_F(StoreTest, EditSeesWhatTheWorkspaceWroteSinceTheRowWasRead) {
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
TEST_F(StoreTest, TransactionsMustBeBegunAndNest) {
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

TEST(OpenDatabase, RefusesWhatIsNoStore) {
  testing::TempDir dir;
  auto text = dir / "notes.mdb";
  std::ofstream(text) << "These are shopping notes, not a database. " << std::string(4096, 'x');
  std::ofstream(dir / "empty.mdb").flush();
  auto& workspace = *DBEngine().Workspaces(0);
  const String missing = (dir / "missing.mdb").string();
  EXPECT_STORE_ERROR(workspace.OpenDatabase(missing), store::errFileNotFound,
                     "Could not find file '" + missing + "'.");
  EXPECT_STORE_ERROR(workspace.OpenDatabase(text.string()), store::errUnrecognizedFormat,
                     "Unrecognized database format '" + text.string() + "'.");
  for (auto path : {dir / "empty.mdb", dir.path()}) {
    EXPECT_STORE_ERROR(workspace.OpenDatabase(path.string()), store::errUnrecognizedFormat,
                       "Unrecognized database format '" + path.string() + "'.");
  }
  EXPECT_STORE_ERROR(workspace.OpenDatabase(""), store::errInvalidArgument,
                     "Invalid argument: the database name is empty.");
  EXPECT_EQ(DBEngine().Workspaces(0), DBEngine().Workspaces(0));
  EXPECT_STORE_ERROR(DBEngine().Workspaces(1), store::errItemNotFound,
                     "Item not found in this collection.");
}

// BeginTrans opens the transaction at once; the store's write lock is taken by the first
// statement inside it, which waits for the other writer up to the timeout and then fails with
// the transaction still open, so that Rollback ends it.
TEST_F(StoreTest, AWriterElsewhereFailsTheFirstStatementOfTheTransaction) {
  auto other = store::OpenEngineConnection(file_);
  other->Begin(1);
  other->Describe("Orders");  // the write lock is taken by now on every engine
  Workspace().BeginTrans();
  try {
    Db().OpenRecordset("Orders");
    ADD_FAILURE() << "no lock conflict";
  } catch (const platform::Error& failure) {  // the store's words, and the engine's beside them
    EXPECT_EQ(failure.Number(), store::errLocked);
    EXPECT_EQ(failure.Description(), "Could not update; currently locked.");
    EXPECT_EQ(failure.Context().query, "Orders");
    EXPECT_NE(failure.Context().engineCode, 0);
    EXPECT_FALSE(failure.Context().engineMessage.empty());
  }
  Workspace().Rollback();
  other->Rollback(1);
  Workspace().BeginTrans();
  Db().Execute("Delete From [OrderBasket] Where [OrderId] = 1", dbFailOnError);
  Workspace().CommitTrans();
  EXPECT_EQ(Db().RecordsAffected(), 3);
}

}  // namespace
}  // namespace brindlewayProj::dao
