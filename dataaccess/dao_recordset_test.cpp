// Reading through recordsets: counts, walking both ways, field kinds and names, the failures
// of a query that names what is not there, and a recordset that outlives its database.
#include <gtest/gtest.h>

#include "dataaccess/dao_test_support.h"
#include "store/errors.h"

namespace brindlewayProj::dao {
namespace {

using RecordsetTest = StoreTest;

// A dynaset counts the rows reached, as a snapshot does; past the last row only MovePrevious
// leads back. Without rows there is no current record.
TEST_F(RecordsetTest, CountsRowsReachedAndWalksBothWays) {
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

TEST_F(RecordsetTest, FieldKindsFollowTheDeclaredTypes) {
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

TEST_F(RecordsetTest, UnknownSourcesAndNamesFailInTheStoreWords) {
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
TEST_F(RecordsetTest, StaysUsableWhileHeldAndClosesOnRequest) {
  auto recordset = Snapshot("Select [ProductName] From [BasketList] Where ( [OrderId] = 1 )");
  auto field = recordset->Fields()->Item("ProductName");
  db_.reset();
  recordset->MoveLast();
  EXPECT_EQ(recordset->RecordCount(), 3);
  recordset->Close();
  EXPECT_STORE_ERROR(field->Value(), store::errObjectInvalid, "Object invalid or no longer set.");
}

}  // namespace
}  // namespace brindlewayProj::dao
