// The work of each method must not grow with the store: every method runs once on a store of
// 1,000 orders and once on one of 10,000, with the same customer, orders and basket under
// test, and the engine's virtual-machine steps of the two calls are compared. A method that
// reads a whole table (a dynaset that loads every row identity, a scan without an index) takes
// ten times the steps on the larger store and fails here, however fast the machine.
#include <gtest/gtest.h>

#include <memory>

#include <brindleway/brindleway.h>
#include <brindleway/hooks.h>
#include "store/sqlite/statement.h"
#include "tests/support/method_calls.h"
#include "tests/support/test_support.h"

namespace brindlewayProj::testing {
namespace {

// The customer, orders and product under test are the same on every store; the other orders
// belong to other customers and hold other products.
constexpr Long kCustomer = 900;
constexpr Long kProduct = 90;
constexpr Long kFirstOrder = 100'001;  // three orders from here on belong to kCustomer

// A store of `orders` background orders (three basket lines each) plus the three orders of the
// customer under test, made with SQL inside one transaction.
void FillStore(const std::filesystem::path& file, int orders) {
  std::string sql = R"sql(
    BEGIN;
    WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 900)
      INSERT INTO Customers SELECT i, 'First' || i, 'Last' || i FROM n;
    WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 90)
      INSERT INTO Products SELECT i, 'Item ' || i, 'Maker ' || (i % 7), i * 1.25 FROM n;
    UPDATE Products SET ProductName = 'Probe Lantern' WHERE ProductId = 90;
    WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ORDERS)
      INSERT INTO Orders SELECT i, 1 + i % 899, '2026-0' || (1 + i % 9) || '-11 00:00:00', NULL,
                                i % 2, 'Order ' || i FROM n;
    INSERT INTO OrderBasket SELECT OrderId, 1 + (OrderId + k) % 89, 1 + k
      FROM Orders, (SELECT 0 AS k UNION ALL SELECT 1 UNION ALL SELECT 2);
    INSERT INTO Orders VALUES (100001, 900, '2026-05-01 00:00:00', NULL, 0, 'First'),
                              (100002, 900, '2026-06-01 00:00:00', '2026-06-03 00:00:00', 1, NULL),
                              (100003, 900, '2026-07-01 00:00:00', NULL, 0, 'Third');
    INSERT INTO OrderBasket VALUES (100001, 90, 2), (100001, 3, 1), (100001, 4, 5),
                                   (100002, 90, 1), (100002, 5, 2), (100003, 6, 1);
    COMMIT;)sql";
  sql.replace(sql.find("ORDERS"), 6, std::to_string(orders));
  SqlRows(file, sql);
}

const SaleIds kIds{kCustomer, kFirstOrder, kProduct, 7, "Probe Lantern", kFirstOrder + 1,
                   kFirstOrder + 2};

// The steps of each call, in the order of StoreMethodCalls, on a fresh store of `orders` orders.
std::vector<std::uint64_t> StepsPerCall(int orders) {
  TempDir dir;
  auto file = MakeStore(dir, false);
  FillStore(file, orders);
  platform::App::SetPath(dir.path().string());  // the object opens the store there
  brindleway shop;
  platform::App::SetPath("");
  String msg;
  std::vector<std::uint64_t> steps;
  for (const MethodCall& call : StoreMethodCalls(kIds)) {
    auto before = store::sqlite::VmStepsForTesting();
    EXPECT_GE(call.call(shop, msg), 0) << msg;
    steps.push_back(store::sqlite::VmStepsForTesting() - before);
  }
  return steps;
}

TEST(StoreGrowthTest, NoMethodDoesMoreWorkOnATenTimesLargerStore) {
  auto small = StepsPerCall(1'000);
  auto large = StepsPerCall(10'000);
  auto calls = StoreMethodCalls(kIds);
  for (std::size_t i = 0; i < calls.size(); ++i) {
    // A few steps of slack for the engine's own bookkeeping; a scan would add thousands.
    EXPECT_LE(large[i], small[i] + small[i] / 20 + 20)
        << calls[i].name << ": " << small[i] << " steps at 1,000 orders, " << large[i]
        << " at 10,000";
  }
}

}  // namespace
}  // namespace brindlewayProj::testing
