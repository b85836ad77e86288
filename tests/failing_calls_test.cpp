// Calls that fail on the component's own side: every method after DbDisconnect, and the
// listings handed a list that is Nothing.
#include <functional>

#include "tests/support/method_calls.h"
#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

using FailingCallsTest = ShopTest;
const String kNotSet = "> Object variable or With block variable not set";

// The readers and the deletions answer -1 with the failure's text and leave the caller's
// variables alone; the four transaction methods fail as calls, since their Rollback has no
// workspace, with ReturnMsg already written.
TEST_F(FailingCallsTest, AfterDbDisconnectEveryMethodFails) {
  ASSERT_EQ(shop_->DbDisconnect(msg_), 0);
  auto list = std::make_shared<Collection>();
  list->Add(Variant("kept"));
  std::shared_ptr<dao::Recordset> table;
  String separator, name = "n", first = "f", last = "l", description = "d", tea = "Tea";
  Long order = 42, customer = 17, product = 7, quantity = -1;
  Date date{1};
  Integer delivery = -1;
  std::pair<String, std::function<Integer()>> failing[] = {
      {"BasketList", [&] { return shop_->BasketList(msg_, list, order); }},
      {"GetOrderedProducts", [&] { return shop_->GetOrderedProducts(msg_, list, order); }},
      {"BasketTable", [&] { return shop_->BasketTable(msg_, table, order); }},
      {"ListOfOrders", [&] { return shop_->ListOfOrders(msg_, list, separator, customer); }},
      {"ListOpenOrders",
       [&] { return shop_->ListOpenOrders(msg_, list, separator, customer, delivery); }},
      {"ListShippedOrders",
       [&] { return shop_->ListShippedOrders(msg_, list, separator, customer); }},
      {"LookupOrderedProduct",
       [&] { return shop_->LookupOrderedProduct(msg_, name, quantity, tea); }},
      {"QuantityOrdered", [&] { return shop_->QuantityOrdered(msg_, quantity, order, product); }},
      {"OrderDetail",
       [&] {
         return shop_->OrderDetail(msg_, customer, first, last, date, date, delivery, description,
                                   order);
       }},
      {"DeleteAnOrder", [&] { return shop_->DeleteAnOrder(msg_, order); }},
      {"RemoveFromBasket", [&] { return shop_->RemoveFromBasket(msg_, order, product); }},
  };
  for (auto& [method, call] : failing) {
    EXPECT_EQ(call(), -1) << method;
    EXPECT_EQ(msg_, "<CompError: brindleway." + method + kNotSet);
  }
  EXPECT_EQ(Entries(list), std::vector<String>{"kept"});
  EXPECT_EQ(table, nullptr);
  EXPECT_EQ(separator + name + first + last + description, "nfld");
  EXPECT_EQ(std::to_string(customer) + std::to_string(quantity) + std::to_string(delivery),
            "17-1-1");
  EXPECT_EQ(date, Date{1});

  for (const MethodCall& method : TransactionMethodCalls({17, 42, 7, 8, "Tea", 42, 42})) {
    msg_.clear();
    EXPECT_THROW(method.call(*shop_, msg_), platform::Error) << method.name;
    EXPECT_EQ(msg_, "<CompError: brindleway." + String(method.name) + kNotSet);
  }
}

// A list that is Nothing is passed by when no row is found; with rows the first Add fails.
TEST_F(FailingCallsTest, AListThatIsNothingFailsOnlyWhenRowsAreFound) {
  Sql("INSERT INTO Orders (OrderId, CustomerId, Delivery) VALUES (1, 17, 0), (2, 17, 1);"
      "INSERT INTO OrderBasket VALUES (1, 7, 1);");
  std::shared_ptr<Collection> nothing;
  String separator;
  Integer delivery = 0;
  const std::tuple<String, Long, std::function<Integer(Long)>> listings[] = {
      {"BasketList", 1, [&](Long id) { return shop_->BasketList(msg_, nothing, id); }},
      {"GetOrderedProducts", 1,
       [&](Long id) { return shop_->GetOrderedProducts(msg_, nothing, id); }},
      {"ListOfOrders", 17,
       [&](Long id) { return shop_->ListOfOrders(msg_, nothing, separator, id); }},
      {"ListOpenOrders", 17,
       [&](Long id) { return shop_->ListOpenOrders(msg_, nothing, separator, id, delivery); }},
      {"ListShippedOrders", 17,
       [&](Long id) { return shop_->ListShippedOrders(msg_, nothing, separator, id); }},
  };
  for (auto& [method, withRows, list] : listings) {
    EXPECT_EQ(list(99), 0) << method;
    EXPECT_EQ(msg_, "<CompWarning: brindleway." + method + "> Did not find any records");
    EXPECT_EQ(list(withRows), -1) << method;
    EXPECT_EQ(msg_, "<CompError: brindleway." + method + kNotSet);
  }
}

}  // namespace
}  // namespace brindlewayProj::testing
