// End to end: the Integer status at its limit, one method for each road a count takes (rows
// into a list, rows into out-parameters, a recordset handed over, rows deleted), on stores
// filled in bulk.
#include <functional>

#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

class SaleLimitsTest : public ShopTest {
 protected:
  // Customer 18 gets `n` shipped orders and order 1 `n` basket rows. The stored query
  // OrdersWithNames is redefined to give an order the id of its customer, so that OrderDetail
  // meets `n` rows for one id.
  void Fill(int n) {
    std::string numbers =
        " WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
        std::to_string(n) + ") ";
    Sql("INSERT INTO Orders (CustomerId, OrderDate, DeliveryDate, Delivery)" + numbers +
        "SELECT 18, '1999-03-14 00:00:00', '1999-03-20 00:00:00', 1 FROM n;" +
        "INSERT INTO OrderBasket" + numbers + "SELECT 1, 7, i FROM n;" +
        "DROP VIEW OrdersWithNames; CREATE VIEW OrdersWithNames AS SELECT o.CustomerId AS "
        "OrderId, o.CustomerId, c.FirstName, c.LastName, o.OrderDate, o.DeliveryDate, "
        "o.Delivery, o.Description FROM Orders o LEFT JOIN Customers c USING (CustomerId);");
  }
};

// 32767 rows are counted; at 32768 the narrowing fails before any list, separator or
// out-parameter is touched, and the rows RemoveFromBasket deleted stay deleted.
TEST_F(SaleLimitsTest, CountsAnswer32767AndOverflowAt32768) {
  Fill(32767);
  std::shared_ptr<Collection> lines;
  String separator, first, last, description;
  Long customer = -1, c18 = 18, order = 1, tea = 7;
  Date ordered{1}, delivered{2};
  Integer delivery = -1;
  std::shared_ptr<dao::Recordset> table;
  std::tuple<String, bool, std::function<Integer()>> readers[] = {
      {"BasketList", true, [&] { return shop_->BasketList(msg_, lines, order); }},
      {"ListShippedOrders", true,
       [&] { return shop_->ListShippedOrders(msg_, lines, separator, c18); }},
      {"OrderDetail", false,
       [&] {
         return shop_->OrderDetail(msg_, customer, first, last, ordered, delivered, delivery,
                                   description, c18);
       }},
      {"BasketTable", false, [&] { return shop_->BasketTable(msg_, table, order); }},
  };
  for (int rows : {32767, 32768}) {
    for (auto& [method, fills, read] : readers) {
      lines = std::make_shared<Collection>();
      lines->Add(Variant("kept"));
      separator = "";
      Integer status = read();
      if (rows == 32767) {
        EXPECT_EQ(status, 32767) << method << ": " << msg_;
        EXPECT_EQ(lines->Count(), fills ? 32767 : 1) << method;
        continue;
      }
      EXPECT_EQ(status, -1) << method;
      EXPECT_EQ(msg_, "<CompError: brindleway." + method + "> Overflow");
      EXPECT_EQ(Entries(lines), std::vector<String>{"kept"}) << method;
      EXPECT_EQ(separator, "") << method;
    }
    customer = -1;
    if (rows == 32767) {
      Sql("INSERT INTO Orders (CustomerId, Delivery) VALUES (18, 1);"
          "INSERT INTO OrderBasket VALUES (1, 7, 32768);");
    }
  }
  EXPECT_EQ(customer, -1) << "OrderDetail wrote an out-parameter past the overflow";

  EXPECT_EQ(shop_->RemoveFromBasket(msg_, order, tea), -1);
  EXPECT_EQ(msg_, "<CompError: brindleway.RemoveFromBasket> Overflow");
  EXPECT_EQ(Scalar("SELECT count(*) FROM OrderBasket WHERE OrderId = 1"), "0");
}

}  // namespace
}  // namespace brindlewayProj::testing
