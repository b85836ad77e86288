// The four methods with a transaction against another writer and inside a client's
// transaction, and the keys of new orders.
#include <sqlite3.h>

#include "tests/support/forwarding_connection.h"
#include "tests/support/method_calls.h"
#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

// Order 1 of customer 17 holds Tea (7); a new order goes to customer 18, a Mug (8) to order 1.
const auto kMethods = StoreMethodCalls({18, 1, 7, 8, "Tea", 1, 1}, 4);

class TransactionTest : public ShopTest {
 protected:
  TransactionTest() {
    Sql("INSERT INTO Orders VALUES (1, 17, '2026-11-01 00:00:00', NULL, 0, 'First');"
        "INSERT INTO OrderBasket VALUES (1, 7, 2);");
  }
  ~TransactionTest() override { HookStoreOperations(nullptr); }
};

// Another writer that tries to commit while a method is between its read and its write is
// held off until the method has committed: the method's read still holds when it writes.
// SQLite only: there any writer takes the file's lock; on PostgreSQL only the component's
// transactions take the database's write lock, and a foreign writer's change between read and
// write is caught by Update's check instead.
TEST_F(TransactionTest, NoOtherWriterCommitsBetweenAMethodsReadAndItsWrite) {
  for (const auto& method : kMethods) {
    SCOPED_TRACE(method.name);
    bool inTransaction = false, tried = false;
    int theirs = SQLITE_OK;
    shop_.reset();  // its connection goes, so that the next object opens one through the hook
    HookStoreOperations([&](const std::string& operation) {
      inTransaction = inTransaction || operation.starts_with("begin 1");
      if (!inTransaction || tried || !operation.starts_with("step SELECT")) return;
      tried = true;
      sqlite3* other = nullptr;
      sqlite3_open(store_.c_str(), &other);
      theirs = sqlite3_exec(other, "UPDATE Orders SET Description = 'theirs'", nullptr, nullptr,
                            nullptr);
      sqlite3_close(other);
    });
    shop_ = std::make_unique<brindleway>();
    EXPECT_GE(method.call(*shop_, msg_), 0) << msg_;
    EXPECT_TRUE(tried);
    EXPECT_EQ(theirs, SQLITE_BUSY);
    shop_.reset();
  }
}

// A client's own transaction on the shared workspace survives every method called inside it,
// a failing one included, and ends as the client ends it.
TEST_F(TransactionTest, AClientsTransactionSurvivesTheMethodsCalledInsideIt) {
  for (bool commit : {false, true}) {
    SCOPED_TRACE(commit ? "commit" : "rollback");
    const auto before = OrdersAndBasket(store_);
    auto workspace = dao::DBEngine().Workspaces(0);
    workspace->BeginTrans();
    workspace->OpenDatabase(store_.string())
        ->Execute("Delete From [OrderBasket] Where [ProductId] = 7", dao::dbFailOnError);
    for (const auto& method : kMethods) EXPECT_GE(method.call(*shop_, msg_), 0) << msg_;
    Long order = 1, unknown = 99, one = 1;
    EXPECT_EQ(shop_->ProductToBuy(msg_, order, unknown, one), -1);
    EXPECT_EQ(OrdersAndBasket(store_), before);  // nothing lasting yet
    if (commit) {
      workspace->CommitTrans();
      EXPECT_EQ(SqlRows(store_, "SELECT ProductId, Quantity FROM OrderBasket"),
                (std::vector<SqlRow>{{"8", "2"}}));
      EXPECT_EQ(SqlRows(store_, "SELECT Delivery, DeliveryDate FROM Orders WHERE OrderId = 1"),
                (std::vector<SqlRow>{{"1", "2026-11-09 00:00:00"}}));
      EXPECT_EQ(Scalar("SELECT count(*) FROM Orders WHERE CustomerId = 18"), "1");
    } else {
      workspace->Rollback();
      EXPECT_EQ(OrdersAndBasket(store_), before);
    }
    EXPECT_THROW(workspace->Rollback(), platform::Error) << "a transaction stayed open";
  }
}

// The key that StartNewOrder hands out exists before the row is stored, for either form of
// SQLite's engine-numbered key, and is never stored for another order, also after a refused order.
TEST(OrderKeyTest, KeysComeAtAddNewAndAreNotReusedAfterARefusal) {
  for (const char* key : {"INTEGER PRIMARY KEY AUTOINCREMENT", "INTEGER PRIMARY KEY"}) {
    SCOPED_TRACE(key);
    TempDir dir;
    auto file = dir / "brindleway.mdb";
    const std::string schema =
        "CREATE TABLE Customers (CustomerId INTEGER PRIMARY KEY, FirstName TEXT, LastName TEXT);"
        "CREATE TABLE Orders (OrderId " + std::string(key) +
        ", CustomerId INTEGER REFERENCES Customers(CustomerId), OrderDate DATETIME,"
        " DeliveryDate DATETIME, Delivery SMALLINT, Description TEXT);"
        "INSERT INTO Customers VALUES (1, 'Ada', 'Moss');"
        "INSERT INTO Orders (OrderId, CustomerId, Delivery) VALUES (5, 1, 0);";
    SqlRows(file, schema);
    ASSERT_FALSE(HasFailure());
    platform::App::SetPath(dir.path().string());
    brindleway shop;
    platform::App::SetPath("");
    String msg;
    Long refused = 0, stored = 0, known = 1, unknown = 42;
    Variant none, open = Integer(0);
    EXPECT_EQ(shop.StartNewOrder(msg, refused, unknown, none, none, open), -1);
    EXPECT_EQ(refused, 6);
    EXPECT_EQ(shop.StartNewOrder(msg, stored, known, none, none, open), 0) << msg;
    EXPECT_EQ(stored, 7);
    EXPECT_EQ(SqlScalar(file, "SELECT group_concat(OrderId) FROM Orders WHERE OrderId > 5"), "7");
  }
}

}  // namespace
}  // namespace brindlewayProj::testing
