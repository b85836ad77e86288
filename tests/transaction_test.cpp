// Transactions of the store methods: failed calls store nothing, no other writer commits
// between a method's read and its write, and the keys of new orders are never given twice.
#include <sqlite3.h>

#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

using store::FailureKind;
const String kNotSet = "Object variable or With block variable not set";
const SaleIds kIds{17, 42, 7, 8, "Tea", 42, 42};

// Fails the `failAt`-th store operation (from 1) after it is armed, once.
struct FaultPlan {
  int failAt = 0;
  FailureKind kind = FailureKind::kOther;
  int seen = 0;
  bool fired = false;
};

class TransactionTest : public ShopTest {
 protected:
  TransactionTest() {
    Reset();
    shop_.reset();  // the object below opens its connection through the hook
    HookStoreOperations([this](const std::string&) {
      if (plan_.failAt == 0 || ++plan_.seen != plan_.failAt) return;
      plan_.fired = true;
      throw store::BackendError(plan_.kind, "disk I/O error");
    });
    shop_ = std::make_unique<brindleway>();
  }
  ~TransactionTest() override {
    shop_.reset();
    HookStoreOperations(nullptr);
  }

  // The orders and basket every attempt starts from.
  void Reset() {
    Sql("DELETE FROM OrderBasket; DELETE FROM Orders;"
        "INSERT INTO Orders VALUES (42, 17, '2026-03-01 00:00:00', NULL, 0, 'Tea for two'),"
        " (43, 17, '2026-02-01 00:00:00', '2026-02-03 00:00:00', 1, NULL);"
        "INSERT INTO OrderBasket VALUES (42, 7, 3), (42, 8, 1), (43, 7, 1);");
  }
  FaultPlan plan_;
};

// A fault at each store operation in turn answers -1 with the failure's text, leaves the store as
// it was and no transaction open; the next call succeeds. A reader elsewhere stops no write.
TEST_F(TransactionTest, AFaultAtAnyStoreOperationAnswersMinusOneAndChangesNothing) {
  const std::vector<SqlRow> start = OrdersAndBasket(store_);
  auto reader = store::OpenEngineConnection(store_);
  auto reading = reader->Prepare("SELECT \"OrderId\" FROM \"Orders\"");
  reading->Bind({});
  ASSERT_TRUE(reading->Step());
  const std::pair<FailureKind, String> kinds[] = {
      {FailureKind::kBusy, "Could not update; currently locked."},
      {FailureKind::kFull, "Not enough space on disk."},
      {FailureKind::kOther, "disk I/O error"},
      {FailureKind::kReadOnly, "Cannot update. Database or object is read-only."},
  };
  for (const MethodCall& method : StoreMethodCalls(kIds)) {
    for (const auto& [kind, text] : kinds) {
      for (int k = 1;; ++k) {
        SCOPED_TRACE(std::string(method.name) + ", " + text + ", operation " + std::to_string(k));
        Reset();
        plan_ = {k, kind};
        const Integer status = method.call(*shop_, msg_);
        if (!plan_.fired) {  // the method finished before its k-th operation
          EXPECT_GE(status, 0) << msg_;
          EXPECT_GT(k, 1) << "no store operation";
          break;
        }
        EXPECT_EQ(status, -1);
        EXPECT_EQ(msg_, "<CompError: brindleway." + String(method.name) + "> " + text);
        EXPECT_EQ(OrdersAndBasket(store_), start);
        EXPECT_THROW(dao::DBEngine().Workspaces(0)->Rollback(), platform::Error)
            << "a transaction stayed open";
        plan_ = {};
        EXPECT_GE(method.call(*shop_, msg_), 0) << "the next call failed: " << msg_;
      }
    }
  }
}

// The four transaction methods throw (their Rollback has no workspace) with ReturnMsg written;
// the others answer -1, BasketTable leaving the caller's recordset as it was.
TEST_F(TransactionTest, AfterDbDisconnectEveryMethodFails) {
  ASSERT_EQ(shop_->DbDisconnect(msg_), 0);
  int index = 0;
  for (const MethodCall& method : StoreMethodCalls(kIds)) {
    msg_.clear();
    if (index++ < 4) {
      EXPECT_THROW(method.call(*shop_, msg_), platform::Error) << method.name;
    } else {
      EXPECT_EQ(method.call(*shop_, msg_), -1) << method.name;
    }
    EXPECT_EQ(msg_, "<CompError: brindleway." + String(method.name) + "> " + kNotSet);
  }
  std::shared_ptr<dao::Recordset> table;
  Long order = 42;
  EXPECT_EQ(shop_->BasketTable(msg_, table, order), -1);
  EXPECT_EQ(table, nullptr);
}

// A writer between a method's read and its write is held off until the method commits. SQLite
// only: on PostgreSQL a foreign writer's change is caught by Update's check instead.
TEST_F(TransactionTest, NoOtherWriterCommitsBetweenAMethodsReadAndItsWrite) {
  for (const auto& method : StoreMethodCalls(kIds, 4)) {
    SCOPED_TRACE(method.name);
    bool inTransaction = false, tried = false;
    int theirs = SQLITE_OK;
    shop_.reset();  // its connection goes, so that the next object opens one through the hook
    HookStoreOperations([&](const std::string& operation) {
      inTransaction = inTransaction || operation.starts_with("begin 1");
      if (!inTransaction || tried || operation.starts_with("begin") ||
          operation.starts_with("prepare")) {
        return;
      }
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

// For either form of SQLite's numbered key, StartNewOrder's key exists before the row is
// stored, and is never stored for another order, also after a refusal.
TEST(OrderKeyTest, KeysComeAtAddNewAndAreNotReusedAfterARefusal) {
  for (const char* key : {"INTEGER PRIMARY KEY AUTOINCREMENT", "INTEGER PRIMARY KEY"}) {
    SCOPED_TRACE(key);
    TempDir dir;
    auto file = dir / "brindleway.mdb";
    SqlRows(file,
            "CREATE TABLE Customers (CustomerId INTEGER PRIMARY KEY, FirstName TEXT, "
            "LastName TEXT); CREATE TABLE Orders (OrderId " +
                std::string(key) +
                ", CustomerId INTEGER REFERENCES Customers(CustomerId), OrderDate DATETIME, "
                "DeliveryDate DATETIME, Delivery SMALLINT, Description TEXT);"
                "INSERT INTO Customers VALUES (1, 'Ada', 'Moss');"
                "INSERT INTO Orders (OrderId, CustomerId, Delivery) VALUES (5, 1, 0);");
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
