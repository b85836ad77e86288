// Stores filled in bulk: the Integer status at its limit, and work that must not grow with them.
#include <functional>

#include "store/sqlite/statement.h"
#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

// The numbers 1 to `count`, as the table n(i) of the statement that follows.
std::string Numbers(int count) {
  return " WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
         std::to_string(count) + ") ";
}

using SaleLimitsTest = ShopTest;

// Each road a count takes: at 32768 rows the narrowing fails before any list, separator or
// out-parameter is touched; rows RemoveFromBasket deleted stay deleted. Customer 18 has the
// orders, order 1 the basket; OrdersWithNames gives an order its customer's id for OrderDetail.
TEST_F(SaleLimitsTest, CountsAnswer32767AndOverflowAt32768) {
  Sql("INSERT INTO Orders (CustomerId, OrderDate, DeliveryDate, Delivery)" + Numbers(32767) +
      "SELECT 18, '1999-03-14 00:00:00', '1999-03-20 00:00:00', 1 FROM n;" +
      "INSERT INTO OrderBasket" + Numbers(32767) + "SELECT 1, 7, i FROM n;" +
      "DROP VIEW OrdersWithNames; CREATE VIEW OrdersWithNames AS SELECT o.CustomerId AS "
      "OrderId, o.CustomerId, c.FirstName, c.LastName, o.OrderDate, o.DeliveryDate, "
      "o.Delivery, o.Description FROM Orders o LEFT JOIN Customers c USING (CustomerId);");
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
  EXPECT_EQ(SqlScalar(store_, "SELECT count(*) FROM OrderBasket WHERE OrderId = 1"), "0");
}

// The steps of each call beside `orders` orders of other customers and products.
std::vector<std::uint64_t> StepsPerCall(int orders, const std::vector<MethodCall>& calls) {
  TempDir dir;
  auto file = MakeStore(dir, false);
  const std::string customers = "INSERT INTO Customers SELECT i, 'First' || i, 'Last' || i FROM n;";
  SqlRows(file,
          "BEGIN;" + Numbers(900) + customers + Numbers(90) +
              "INSERT INTO Products SELECT i, 'Item ' || i, 'Maker ' || (i % 7), i * 1.25 FROM n;"
              "UPDATE Products SET ProductName = 'Probe Lantern' WHERE ProductId = 90;" +
              Numbers(orders) +
              "INSERT INTO Orders SELECT i, 1 + i % 899, '2026-0' || (1 + i % 9) || "
              "'-11 00:00:00', NULL, i % 2, 'Order ' || i FROM n;"
              "INSERT INTO OrderBasket SELECT OrderId, 1 + (OrderId + k) % 89, 1 + k "
              "FROM Orders, (SELECT 0 AS k UNION ALL SELECT 1 UNION ALL SELECT 2);"
              "INSERT INTO Orders VALUES (100001, 900, '2026-05-01 00:00:00', NULL, 0, 'First'),"
              " (100002, 900, '2026-06-01 00:00:00', '2026-06-03 00:00:00', 1, NULL),"
              " (100003, 900, '2026-07-01 00:00:00', NULL, 0, 'Third');"
              "INSERT INTO OrderBasket VALUES (100001, 90, 2), (100001, 3, 1), (100001, 4, 5),"
              " (100002, 90, 1), (100002, 5, 2), (100003, 6, 1); COMMIT;");
  platform::App::SetPath(dir.path().string());  // the object opens the store there
  brindleway shop;
  platform::App::SetPath("");
  String msg;
  std::vector<std::uint64_t> steps;
  for (const MethodCall& call : calls) {
    auto before = store::sqlite::VmStepsForTesting();
    EXPECT_GE(call.call(shop, msg), 0) << msg;
    steps.push_back(store::sqlite::VmStepsForTesting() - before);
  }
  return steps;
}

// The engine's steps of each method on 1,000 orders and on 10,000: reading a whole table (a
// dynaset of every row identity, a scan without an index) takes ten times more. SQLite only.
TEST(StoreGrowthTest, NoMethodDoesMoreWorkOnATenTimesLargerStore) {
  const auto calls = StoreMethodCalls({900, 100'001, 90, 7, "Probe Lantern", 100'002, 100'003});
  const auto small = StepsPerCall(1'000, calls), large = StepsPerCall(10'000, calls);
  for (std::size_t i = 0; i < calls.size(); ++i) {
    // A few steps of slack for the engine's own bookkeeping; a scan would add thousands.
    EXPECT_LE(large[i], small[i] + small[i] / 20 + 20)
        << calls[i].name << ": " << small[i] << " steps at 1,000 orders, " << large[i]
        << " at 10,000";
  }
}

}  // namespace
}  // namespace brindlewayProj::testing
