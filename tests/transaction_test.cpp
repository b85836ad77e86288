// The four methods with a transaction under contention and inside a client's transaction, on
// real stores with a second connection and a second process; and the keys of new orders.
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>


#include "store/backend.h"
#include "tests/support/forwarding_connection.h"
#include "tests/support/method_calls.h"
#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

// The orders and basket rows in one text.
std::string Fingerprint(const std::filesystem::path& store) {
  return JoinedRows(store, "SELECT OrderId, CustomerId, DeliveryDate, Delivery FROM Orders "
                           "ORDER BY OrderId") +
         " / " + JoinedRows(store, "SELECT * FROM OrderBasket ORDER BY OrderId, ProductId");
}

// Order 1 of customer 17 holds Tea (7); a new order goes to customer 18, a Mug (8) to order 1.
const auto kMethods = TransactionMethodCalls({18, 1, 7, 8, "Tea", 1, 1});

// A second process that holds the store's write lock, with a change of its own not yet
// committed, until it is released.
class LockHolder {
 public:
  explicit LockHolder(const std::filesystem::path& store) {
    int ready[2], release[2];
    EXPECT_EQ(pipe(ready), 0);
    EXPECT_EQ(pipe(release), 0);
    child_ = fork();
    if (child_ == 0) {
      close(ready[0]), close(release[1]);
      char byte = 'y';
      try {
        auto db = store::OpenEngineConnection(store);
        db->Begin(1);
        db->Execute("UPDATE \"Orders\" SET \"Description\" = 'theirs'", {});
        (void)!write(ready[1], &byte, 1);
        (void)!read(release[0], &byte, 1);
        db->Rollback(1);
      } catch (const store::BackendError&) {
        byte = 'n';
        (void)!write(ready[1], &byte, 1);
      }
      _exit(0);
    }
    char byte = 0;
    EXPECT_EQ(read(ready[0], &byte, 1), 1);
    EXPECT_EQ(byte, 'y');
    release_ = release[1];
    close(ready[0]), close(ready[1]), close(release[0]);
  }
  ~LockHolder() {
    close(release_);  // end of file releases the child
    int status = 0;
    waitpid(child_, &status, 0);
  }

 private:
  pid_t child_ = -1;
  int release_ = -1;
};

class TransactionTest : public ShopTest {
 protected:
  TransactionTest() {
    Sql("INSERT INTO Orders VALUES (1, 17, '2026-11-01 00:00:00', NULL, 0, 'First');"
        "INSERT INTO OrderBasket VALUES (1, 7, 2);");
  }
  ~TransactionTest() override { store::SetConnectionOpenerForTesting(nullptr); }

  // No transaction is left open in the thread's workspace.
  static void ExpectNoTransaction() {
    EXPECT_THROW(dao::DBEngine().Workspaces(0)->Rollback(), platform::Error);
  }
};

TEST_F(TransactionTest, AWriteLockElsewhereAnswersMinusOneAndTheNextCallSucceeds) {
  for (const auto& method : kMethods) {
    SCOPED_TRACE(method.name);
    const std::string before = Fingerprint(store_);
    {
      LockHolder holder(store_);
      EXPECT_EQ(method.call(*shop_, msg_), -1);
      EXPECT_EQ(msg_, "<CompError: brindleway." + std::string(method.name) +
                          "> Could not update; currently locked.");
      ExpectNoTransaction();
    }
    EXPECT_EQ(Fingerprint(store_), before);
    EXPECT_GE(method.call(*shop_, msg_), 0) << msg_;
    EXPECT_NE(Fingerprint(store_), before);
  }
}

TEST_F(TransactionTest, AReaderElsewhereDoesNotStopAWrite) {
  auto reader = store::OpenEngineConnection(store_);
  auto reading = reader->Prepare("SELECT \"OrderId\" FROM \"Orders\"");
  reading->Bind({});
  ASSERT_TRUE(reading->Step());  // a read stays under way
  for (const auto& method : kMethods) {
    EXPECT_GE(method.call(*shop_, msg_), 0) << msg_;
  }
  EXPECT_EQ(Fingerprint(store_),
            "1:17:2026-11-09 00:00:00:1 2:18:-:0 / 1:7:5 1:8:2");
}

// Another writer that tries to commit while a method is between its read and its write is
// held off until the method has committed: the method's read still holds when it writes.
// SQLite only: there any writer takes the file's lock; on PostgreSQL only the component's
// transactions take the database's write lock, and a foreign writer's change between read and
// write is caught by Update's check instead.
TEST_F(TransactionTest, NoOtherWriterCommitsBetweenAMethodsReadAndItsWrite) {
  struct Interleaver : ForwardingConnection {
    Interleaver(std::shared_ptr<store::Connection> inner, std::filesystem::path file)
        : ForwardingConnection(std::move(inner)), file(std::move(file)) {}
    void Before(const std::string& operation) override {
      if (operation.rfind("begin 1", 0) == 0) inTransaction = true;
      if (!inTransaction || tried || operation.rfind("step SELECT", 0) != 0) return;
      tried = true;
      sqlite3* other = nullptr;
      sqlite3_open(file.c_str(), &other);
      otherResult = sqlite3_exec(other, "UPDATE Orders SET Description = 'theirs'", nullptr,
                                 nullptr, nullptr);
      sqlite3_close(other);
    }
    std::filesystem::path file;
    bool inTransaction = false, tried = false;
    int otherResult = SQLITE_OK;
  };
  for (const auto& method : kMethods) {
    SCOPED_TRACE(method.name);
    Interleaver* interleaver = nullptr;
    shop_.reset();  // its connection goes, so that the next object opens one of its own
    store::SetConnectionOpenerForTesting([&](const std::filesystem::path& file) {
      auto connection = std::make_shared<Interleaver>(store::OpenEngineConnection(file), file);
      interleaver = connection.get();
      return connection;
    });
    shop_ = std::make_unique<brindleway>();
    EXPECT_GE(method.call(*shop_, msg_), 0) << msg_;
    ASSERT_TRUE(interleaver && interleaver->tried);
    EXPECT_EQ(interleaver->otherResult, SQLITE_BUSY);
  }
}

// A client's own transaction on the shared workspace survives every method called inside it,
// a failing one included, and ends as the client ends it.
TEST_F(TransactionTest, AClientsTransactionSurvivesTheMethodsCalledInsideIt) {
  for (bool commit : {false, true}) {
    SCOPED_TRACE(commit ? "commit" : "rollback");
    const std::string before = Fingerprint(store_);
    auto workspace = dao::DBEngine().Workspaces(0);
    workspace->BeginTrans();
    workspace->OpenDatabase(store_.string())
        ->Execute("Delete From [OrderBasket] Where [ProductId] = 7", dao::dbFailOnError);
    for (const auto& method : kMethods) EXPECT_GE(method.call(*shop_, msg_), 0) << msg_;
    Long order = 1, unknown = 99, one = 1;
    EXPECT_EQ(shop_->ProductToBuy(msg_, order, unknown, one), -1);
    EXPECT_EQ(Fingerprint(store_), before);  // nothing lasting yet
    if (commit) {
      workspace->CommitTrans();
      EXPECT_EQ(JoinedRows(store_, "SELECT ProductId, Quantity FROM OrderBasket"), "8:2");
      EXPECT_EQ(JoinedRows(store_, "SELECT Delivery, DeliveryDate FROM Orders WHERE OrderId = 1"),
                "1:2026-11-09 00:00:00");
      EXPECT_EQ(Scalar("SELECT count(*) FROM Orders WHERE CustomerId = 18"), "1");
    } else {
      workspace->Rollback();
      EXPECT_EQ(Fingerprint(store_), before);
    }
    ExpectNoTransaction();
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
