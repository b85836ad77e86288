// Failures from below the object model: files that cannot be opened, a backend that fails on
// demand (busy, full, read-only, constraint), and a row locked by another connection. Every
// one ends in the exact store error and leaves nothing half-written.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>

#include "dataaccess/dao_test_support.h"
#include "store/backend.h"
#include "store/errors.h"
#include "store/sqlite/connection.h"
#include "tests/support/forwarding_connection.h"

namespace brindlewayProj::dao {
namespace {

using store::FailureKind;

// Fails the next store operation whose description starts with `prefix` with `kind`, once.
struct FaultPlan {
  std::string prefix;
  FailureKind kind = FailureKind::kOther;
};

class FaultyConnection : public testing::ForwardingConnection {
 public:
  FaultyConnection(std::shared_ptr<store::Connection> inner, FaultPlan& plan)
      : ForwardingConnection(std::move(inner)), plan_(plan) {}
  void Before(const std::string& operation) override {
    if (plan_.prefix.empty() || operation.rfind(plan_.prefix, 0) != 0) return;
    plan_.prefix.clear();
    throw store::BackendError(plan_.kind, "injected fault");
  }

 private:
  FaultPlan& plan_;
};

class FaultTest : public StoreTest {
 protected:
  static FaultPlan plan;
  static void SetUpTestSuite() {
    store::SetConnectionOpenerForTesting([](const std::filesystem::path& file) {
      return std::make_shared<FaultyConnection>(store::sqlite::Open(file), plan);
    });
  }
  static void TearDownTestSuite() { store::SetConnectionOpenerForTesting(nullptr); }
};
FaultPlan FaultTest::plan;

struct Fault {
  FailureKind kind;
  Long number;
};

class InjectedFault : public FaultTest, public ::testing::WithParamInterface<Fault> {};

TEST_P(InjectedFault, AtUpdateStoresNothing) {
  Workspace().BeginTrans();
  auto orders = Dynaset("Select * From [Orders] Where ( [OrderId] = 2 )");
  orders->Edit();
  orders->Collect("Delivery", Variant(Integer{1}));
  plan = {"update row", GetParam().kind};
  try {
    orders->Update();
    ADD_FAILURE() << "no failure";
  } catch (const platform::Error& failure) {
    EXPECT_EQ(failure.Number(), GetParam().number);
  }
  Workspace().Rollback();
  EXPECT_EQ(Count("Select * From [Orders] Where [Delivery] = 1"), 2);
}

TEST_P(InjectedFault, AtExecuteDeletesNothing) {
  plan = {"execute DELETE", GetParam().kind};
  try {
    Db().Execute("Delete From [OrderBasket] Where ( [OrderId] = 1 )", dbFailOnError);
    ADD_FAILURE() << "no failure";
  } catch (const platform::Error& failure) {
    EXPECT_EQ(failure.Number(), GetParam().number);
  }
  EXPECT_EQ(Db().RecordsAffected(), 0);
  EXPECT_EQ(Count("OrderBasket"), 12);
}

TEST_P(InjectedFault, AtCommitLeavesTheTransactionForRollback) {
  Workspace().BeginTrans();
  auto orders = Dynaset("Orders");
  orders->AddNew();
  orders->Collect("CustomerId", Variant(Long{1}));
  orders->Update();
  plan = {"commit", GetParam().kind};
  try {
    Workspace().CommitTrans();
    ADD_FAILURE() << "no failure";
  } catch (const platform::Error& failure) {
    EXPECT_EQ(failure.Number(), GetParam().number);
  }
  Workspace().Rollback();
  EXPECT_EQ(Count("Orders"), 5);
}

INSTANTIATE_TEST_SUITE_P(Kinds, InjectedFault,
                         ::testing::Values(Fault{FailureKind::kBusy, store::errLocked},
                                           Fault{FailureKind::kFull, store::errDiskFull},
                                           Fault{FailureKind::kReadOnly, store::errReadOnly},
                                           Fault{FailureKind::kUnique, store::errDuplicateKey},
                                           Fault{FailureKind::kOther, store::errEngine}));

TEST_F(FaultTest, TextsOfTheCommonFailures) {
  plan = {"update row", FailureKind::kBusy};
  auto orders = Dynaset("Select * From [Orders] Where ( [OrderId] = 2 )");
  orders->Edit();
  orders->Collect("Delivery", Variant(Integer{1}));
  EXPECT_STORE_ERROR(orders->Update(), store::errLocked, "Could not update; currently locked.");
  plan = {"update row", FailureKind::kFull};
  EXPECT_STORE_ERROR(orders->Update(), store::errDiskFull, "Not enough space on disk.");
  plan = {"reserve key", FailureKind::kReadOnly};
  EXPECT_STORE_ERROR(Dynaset("Orders")->AddNew(), store::errReadOnly,
                     "Cannot update. Database or object is read-only.");
}

TEST(OpenDatabase, RefusesWhatIsNoStore) {
  testing::TempDir dir;
  auto text = dir / "notes.mdb";
  std::ofstream(text) << "These are shopping notes, not a database. " << std::string(4096, 'x');
  std::ofstream(dir / "empty.mdb").flush();
  auto& workspace = *DBEngine().Workspaces(0);
  const String missing = (dir / "missing.mdb").string();
  EXPECT_STORE_ERROR(workspace.OpenDatabase(missing), store::errFileNotFound,
                     "Could not find file '" + missing + "'.");
  EXPECT_STORE_ERROR(workspace.OpenDatabase(text.string()), store::errUnrecognizedFormat,
                     "Unrecognized database format '" + text.string() + "'.");
  for (auto path : {dir / "empty.mdb", dir.path()}) {
    EXPECT_STORE_ERROR(workspace.OpenDatabase(path.string()), store::errUnrecognizedFormat,
                       "Unrecognized database format '" + path.string() + "'.");
  }
  EXPECT_STORE_ERROR(workspace.OpenDatabase(""), store::errInvalidArgument,
                     "Invalid argument: the database name is empty.");
  EXPECT_EQ(DBEngine().Workspaces(0), DBEngine().Workspaces(0));
  EXPECT_STORE_ERROR(DBEngine().Workspaces(1), store::errItemNotFound,
                     "Item not found in this collection.");
}

// BeginTrans opens the transaction at once; the store's write lock is taken by the first
// statement inside it, which waits for the other writer up to the timeout and then fails with
// the transaction still open, so that Rollback ends it.
TEST_F(StoreTest, AWriterElsewhereFailsTheFirstStatementOfTheTransaction) {
  sqlite3* other = nullptr;
  sqlite3_open(file_.c_str(), &other);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  Workspace().BeginTrans();
  try {
    Db().OpenRecordset("Orders");
    ADD_FAILURE() << "no lock conflict";
  } catch (const platform::Error& failure) {  // the store's words, and the engine's beside them
    EXPECT_EQ(failure.Number(), store::errLocked);
    EXPECT_EQ(failure.Description(), "Could not update; currently locked.");
    EXPECT_EQ(failure.Context().query, "Orders");
    EXPECT_EQ(failure.Context().engineCode, SQLITE_BUSY);
    EXPECT_EQ(failure.Context().engineMessage, "database is locked");
  }
  Workspace().Rollback();
  sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close(other);
  Workspace().BeginTrans();
  Db().Execute("Delete From [OrderBasket] Where [OrderId] = 1", dbFailOnError);
  Workspace().CommitTrans();
  EXPECT_EQ(Db().RecordsAffected(), 3);
}

}  // namespace
}  // namespace brindlewayProj::dao
