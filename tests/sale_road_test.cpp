// End to end: one sale from a new order to its shipment, read back through the readers, and
// the transaction methods on a disconnected object.
#include <functional>

#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

using SaleRoadTest = ShopTest;

TEST_F(SaleRoadTest, ASaleWrittenByTheMethodsReadsBackThroughTheReaders) {
  ASSERT_TRUE(boxes_.shown().empty());
  Long order = 0, customer = 17, tea = 7, mug = 8, two = 2, one = 1;
  Variant ordered("3/14/99"), none, open(Integer(0)), description("Gift wrap");
  ASSERT_EQ(shop_->StartNewOrder(msg_, order, customer, ordered, none, open, description), 0);
  EXPECT_EQ(Scalar("SELECT max(OrderId) FROM Orders"), std::to_string(order));
  for (Long* product : {&tea, &tea, &mug}) {
    EXPECT_EQ(shop_->ProductToBuy(msg_, order, *product, product == &mug ? one : two), 0);
    EXPECT_EQ(msg_, "<CompInfo: brindleway.ProductToBuy> Success");
  }
  auto names = std::make_shared<Collection>();
  EXPECT_EQ(shop_->BasketList(msg_, names, order), 3);
  EXPECT_EQ(Entries(names), (std::vector<String>{" Mug ", "Tea", "Tea"}));

  Long unknown = 99;
  EXPECT_EQ(shop_->ProductToBuy(msg_, order, unknown, one), -1);
  EXPECT_EQ(msg_,
            "<CompError: brindleway.ProductToBuy> You cannot add or change a record because a "
            "related record is required in table 'Products'.");
  EXPECT_EQ(Scalar("SELECT count(*) FROM OrderBasket"), "3");

  Date delivered = DateSerial(1999, 3, 20);
  Integer shipped = 1;
  EXPECT_EQ(shop_->BuyAnOrder(msg_, order, delivered, shipped), 1);
  auto lines = std::make_shared<Collection>();
  String separator;
  EXPECT_EQ(shop_->ListShippedOrders(msg_, lines, separator, customer), 1);
  EXPECT_EQ(Entries(lines),
            std::vector<String>{std::to_string(order) + ", 3/14/99, 3/20/99, Gift wrap"});
}

TEST_F(SaleRoadTest, AfterDisconnectTransactionMethodsFailAsCallsWithTheMessageWritten) {
  ASSERT_EQ(shop_->DbDisconnect(msg_), 0);
  const String notSet = "> Object variable or With block variable not set";
  Long order = 42, customer = 17, product = 7, quantity = 1;
  Date date = DateSerial(1999, 3, 20);
  Integer delivery = 0;
  Variant none, open(Integer(0));
  std::pair<String, std::function<void()>> calls[] = {
      {"StartNewOrder", [&] { shop_->StartNewOrder(msg_, order, customer, none, none, open); }},
      {"ProductToBuy", [&] { shop_->ProductToBuy(msg_, order, product, quantity); }},
      {"ModifyOrderQuantity", [&] { shop_->ModifyOrderQuantity(msg_, order, product, open); }},
      {"BuyAnOrder", [&] { shop_->BuyAnOrder(msg_, order, date, delivery); }},
  };
  for (auto& [name, call] : calls) {
    msg_.clear();
    EXPECT_THROW(call(), platform::Error) << name;
    EXPECT_EQ(msg_, "<CompError: brindleway." + name + notSet);
  }
  EXPECT_EQ(shop_->QuantityOrdered(msg_, quantity, order, product), -1);
  EXPECT_EQ(msg_, "<CompError: brindleway.QuantityOrdered" + notSet);
}

}  // namespace
}  // namespace brindlewayProj::testing
