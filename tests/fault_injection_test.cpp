// Faults at every store operation of every method: each method runs with its k-th store
// operation failing (k = 1, 2, ... until the method finishes before reaching k) as busy, disk
// full, I/O error and read-only. Every such call answers -1 with the method's message form and
// the store's text, leaves the store as it was and no transaction open, and the next call
// succeeds.
#include "store/backend.h"
#include "tests/support/forwarding_connection.h"
#include "tests/support/method_calls.h"
#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

using store::FailureKind;

// Fails the `failAt`-th operation (from 1) after it is armed, once; counts operations.
struct FaultPlan {
  int failAt = 0;
  FailureKind kind = FailureKind::kOther;
  int seen = 0;
  bool fired = false;
};

class FaultyConnection : public ForwardingConnection {
 public:
  FaultyConnection(std::shared_ptr<store::Connection> inner, FaultPlan& plan)
      : ForwardingConnection(std::move(inner)), plan_(plan) {}
  void Before(const std::string& /*operation*/) override {
    if (plan_.failAt == 0 || ++plan_.seen != plan_.failAt) return;
    plan_.fired = true;
    throw store::BackendError(plan_.kind, "disk I/O error");
  }

 private:
  FaultPlan& plan_;
};

struct Kind {
  FailureKind kind;
  const char* text;
};

const Kind kKinds[] = {
    {FailureKind::kBusy, "Could not update; currently locked."},
    {FailureKind::kFull, "Not enough space on disk."},
    {FailureKind::kOther, "disk I/O error"},
    {FailureKind::kReadOnly, "Cannot update. Database or object is read-only."},
};

class FaultInjectionTest : public ShopTest {
 protected:
  FaultInjectionTest() {
    shop_.reset();  // the object below opens its connection through the faulty backend
    store::SetConnectionOpenerForTesting([this](const std::filesystem::path& file) {
      return std::make_shared<FaultyConnection>(store::OpenEngineConnection(file), plan_);
    });
    shop_ = std::make_unique<brindleway>();
  }
  ~FaultInjectionTest() override {
    shop_.reset();
    store::SetConnectionOpenerForTesting(nullptr);
  }
  // The orders and basket every attempt starts from.
  void Reset() {
    Sql("DELETE FROM OrderBasket; DELETE FROM Orders;"
        "INSERT INTO Orders VALUES (42, 17, '2026-03-01 00:00:00', NULL, 0, 'Tea for two'),"
        " (43, 17, '2026-02-01 00:00:00', '2026-02-03 00:00:00', 1, NULL);"
        "INSERT INTO OrderBasket VALUES (42, 7, 3), (42, 8, 1), (43, 7, 1);");
  }
  std::string Tables() {
    return JoinedRows(store_, "SELECT * FROM Orders ORDER BY OrderId") + "/" +
           JoinedRows(store_, "SELECT * FROM OrderBasket ORDER BY OrderId, ProductId, Quantity");
  }

  FaultPlan plan_;
};

TEST_F(FaultInjectionTest, AFaultAtAnyStoreOperationAnswersMinusOneAndChangesNothing) {
  int faults = 0;
  const SaleIds ids{17, 42, 7, 8, "Tea", 42, 42};
  for (const MethodCall& method : StoreMethodCalls(ids)) {
    for (const Kind& kind : kKinds) {
      for (int k = 1;; ++k) {
        SCOPED_TRACE(std::string(method.name) + ", " + kind.text + ", operation " +
                     std::to_string(k));
        Reset();
        const std::string before = Tables();
        plan_ = {k, kind.kind};
        Integer status = method.call(*shop_, msg_);
        if (!plan_.fired) {  // the method finished before its k-th operation
          EXPECT_GE(status, 0) << msg_;
          break;
        }
        ++faults;
        EXPECT_EQ(status, -1);
        EXPECT_EQ(msg_, "<CompError: brindleway." + std::string(method.name) + "> " + kind.text);
        EXPECT_EQ(Tables(), before);
        EXPECT_THROW(dao::DBEngine().Workspaces(0)->Rollback(), platform::Error)
            << "a transaction stayed open";
        plan_ = {};
        EXPECT_GE(method.call(*shop_, msg_), 0) << "the next call failed: " << msg_;
      }
    }
  }
  RecordProperty("faults_injected", faults);
}

}  // namespace
}  // namespace brindlewayProj::testing
