// End to end: the counting readers at the limit of the Integer status, on stores built in bulk.
#include <functional>

#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

class SaleLimitsTest : public ShopTest {
 protected:
  // Customer 17 gets `n` open orders and customer 18 `n` shipped ones; order 1 gets `n` rows of
  // product 7 with distinct quantities. The stored query OrdersWithNames is redefined to give
  // an order the id of its customer, so that OrderDetail meets `n` rows for one id.
  void Fill(int n) {
    std::string numbers =
        " WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
        std::to_string(n) + ") ";
    Sql("INSERT INTO Orders (CustomerId, OrderDate, Delivery)" + numbers +
        "SELECT 17, '1999-03-14 00:00:00', 0 FROM n;"
        "INSERT INTO Orders (CustomerId, OrderDate, DeliveryDate, Delivery)" +
        numbers +
        "SELECT 18, '1999-03-14 00:00:00', '1999-03-20 00:00:00', 1 FROM n;"
        "INSERT INTO OrderBasket" +
        numbers +
        "SELECT 1, 7, i FROM n;"
        "DROP VIEW OrdersWithNames; CREATE VIEW OrdersWithNames AS SELECT o.CustomerId AS "
        "OrderId, o.CustomerId, c.FirstName, c.LastName, o.OrderDate, o.DeliveryDate, "
        "o.Delivery, o.Description FROM Orders o LEFT JOIN Customers c USING (CustomerId);");
  }
};

TEST_F(SaleLimitsTest, CountingReadersAnswer32767AndOverflowAt32768) {
  Fill(32767);
  std::shared_ptr<Collection> lines;
  String separator, name, first, last, description;
  Long customer = -1, quantity = -1, c17 = 17, c18 = 18, order = 1, tea = 7;
  Date ordered{1}, delivered{2};
  Integer delivery = -1;
  String teaName = "Tea";
  std::shared_ptr<dao::Recordset> table;
  std::pair<String, std::function<Integer()>> readers[] = {
      {"ListOfOrders", [&] { return shop_->ListOfOrders(msg_, lines, separator, c17); }},
      {"ListOpenOrders",
       [&] { return shop_->ListOpenOrders(msg_, lines, separator, c17, delivery); }},
      {"ListShippedOrders", [&] { return shop_->ListShippedOrders(msg_, lines, separator, c18); }},
      {"OrderDetail",
       [&] {
         return shop_->OrderDetail(msg_, customer, first, last, ordered, delivered, delivery,
                                   description, c17);
       }},
      {"BasketTable", [&] { return shop_->BasketTable(msg_, table, order); }},
      {"QuantityOrdered", [&] { return shop_->QuantityOrdered(msg_, quantity, order, tea); }},
      {"LookupOrderedProduct",
       [&] { return shop_->LookupOrderedProduct(msg_, name, quantity, teaName); }},
  };
  for (int rows : {32767, 32768}) {
    for (auto& [method, read] : readers) {
      lines = std::make_shared<Collection>();
      lines->Add(Variant("kept"));
      separator = name = "";
      quantity = -1;
      Integer status = read();
      if (rows == 32767) {
        EXPECT_EQ(status, 32767) << method << ": " << msg_;
        continue;
      }
      EXPECT_EQ(status, -1) << method;
      EXPECT_EQ(msg_, "<CompError: brindleway." + method + "> Overflow");
      EXPECT_EQ(Entries(lines), std::vector<String>{"kept"}) << method;
      EXPECT_EQ(separator + name + std::to_string(quantity), "-1") << method;
    }
    Sql("INSERT INTO Orders (CustomerId, Delivery) VALUES (17, 0), (18, 1);"
        "INSERT INTO OrderBasket VALUES (1, 7, 32768);");
    customer = -1;
  }
  EXPECT_EQ(customer, -1) << "OrderDetail wrote an out-parameter past the overflow";

  EXPECT_EQ(shop_->RemoveFromBasket(msg_, order, tea), -1);
  EXPECT_EQ(msg_, "<CompError: brindleway.RemoveFromBasket> Overflow");
  EXPECT_EQ(Scalar("SELECT count(*) FROM OrderBasket"), "0") << "the rows stay deleted";
}

}  // namespace
}  // namespace brindlewayProj::testing
