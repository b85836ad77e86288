// StartNewOrder, BuyAnOrder and DeleteAnOrder against a real store file.
#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

using OrderWritesTest = ShopTest;

TEST_F(OrderWritesTest, StartNewOrderStoresGivenFieldsTrimmedAndHandsBackTheStoredKey) {
  Long id = -5, customer = 17;
  Variant orderDate(" 3/14/99 "), deliveryDate, delivery(Integer(0)), description("  Gift wrap ");
  ASSERT_EQ(
      shop_->StartNewOrder(msg_, id, customer, orderDate, deliveryDate, delivery, description), 0);
  EXPECT_EQ(msg_, "<CompInfo: brindleway.StartNewOrder> Success");
  EXPECT_EQ(Scalar("SELECT OrderId||'|'||CustomerId||'|'||OrderDate||'|'||"
                   "ifnull(DeliveryDate,'none')||'|'||Delivery||'|'||Description FROM Orders"),
            std::to_string(id) + "|17|1999-03-14 00:00:00|none|0|Gift wrap");
  EXPECT_EQ(CStr(orderDate), "3/14/99");
  EXPECT_EQ(CStr(description), "Gift wrap");
}

// Each failure answers -1 with the failure's text, stores nothing (as a connection of its own
// sees), and leaves no transaction open behind it.
TEST_F(OrderWritesTest, StartNewOrderFailuresStoreNothing) {
  struct Case {
    Long customer;
    Variant orderDate, delivery;
    String text;
  } cases[] = {
      {17, Variant(), Variant(Long(40000)), "Overflow"},
      {17, Variant("no date"), Variant(Integer(0)), "Type mismatch"},
      {17, Variant(), Variant::Null(), "Invalid use of Null"},
      {17, Variant(), Variant::Missing(), "Type mismatch"},  // iintDelivery left out
      {99, Variant(), Variant(Integer(0)),
       "You cannot add or change a record because a related record is required in table "
       "'Customers'."},
  };
  for (auto& c : cases) {
    Long id = 0;
    Variant deliveryDate, description("x");
    EXPECT_EQ(shop_->StartNewOrder(msg_, id, c.customer, c.orderDate, deliveryDate, c.delivery,
                                   description),
              -1);
    EXPECT_EQ(msg_, "<CompError: brindleway.StartNewOrder> " + c.text);
    EXPECT_EQ(Scalar("SELECT count(*) FROM Orders"), "0") << msg_;
  }
  Long id = 0, customer = 18;
  EXPECT_EQ(shop_->StartNewOrder(msg_, id, customer), -1);  // left out: no Delivery to write
  Variant none, open(Integer(0));
  EXPECT_EQ(shop_->StartNewOrder(msg_, id, customer, none, none, open), 0) << msg_;
  EXPECT_EQ(Scalar("SELECT count(*) FROM Orders"), "1");
}

TEST_F(OrderWritesTest, BuyAnOrderWritesDeliveryAndKeepsTheDateWhenItIsZero) {
  Sql("INSERT INTO Orders VALUES (42, 17, '1999-03-14 00:00:00', '1999-03-20 00:00:00', 0, 'x')");
  Long order = 42;
  Date unset;
  Integer shipped = 1;
  EXPECT_EQ(shop_->BuyAnOrder(msg_, order, unset, shipped), 1);
  EXPECT_EQ(msg_, "<CompInfo: brindleway.BuyAnOrder> Success");
  EXPECT_EQ(Scalar("SELECT DeliveryDate||'|'||Delivery FROM Orders"), "1999-03-20 00:00:00|1");

  Date later = DateSerial(1999, 4, 1);
  Integer reopened = 0;
  EXPECT_EQ(shop_->BuyAnOrder(msg_, order, later, reopened), 1);
  EXPECT_EQ(Scalar("SELECT DeliveryDate||'|'||Delivery FROM Orders"), "1999-04-01 00:00:00|0");

  Long missing = 43;
  EXPECT_EQ(shop_->BuyAnOrder(msg_, missing, later, shipped), 0);
  EXPECT_EQ(msg_, "<CompInfo: brindleway.BuyAnOrder> No records found. Nothing to update");
  EXPECT_EQ(shop_->BuyAnOrder(msg_, order, later, shipped), 1) << "a transaction stayed open";
}

TEST_F(OrderWritesTest, DeleteAnOrderTakesItsBasketAlongAndMissesTheSecondTime) {
  Sql("INSERT INTO Orders (OrderId, CustomerId, Delivery) VALUES (42, 17, 1), (43, 17, 0);"
      "INSERT INTO OrderBasket VALUES (42, 7, 1), (42, 8, 2), (43, 7, 3);");
  Long order = 42;
  EXPECT_EQ(shop_->DeleteAnOrder(msg_, order), 1);
  EXPECT_EQ(msg_, "<CompInfo: brindleway.DeleteAnOrder> 1 records deleted");
  EXPECT_EQ(Scalar("SELECT group_concat(OrderId) FROM OrderBasket"), "43");
  EXPECT_EQ(shop_->DeleteAnOrder(msg_, order), 0);
  EXPECT_EQ(msg_, "<CompError: brindleway.DeleteAnOrder> No records found");
}

}  // namespace
}  // namespace brindlewayProj::testing
