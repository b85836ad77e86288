// Calls that fail: every method with a fault at each of its store operations in turn, or with
// a writer elsewhere holding the store, and every method after DbDisconnect. A failed call
// answers -1 with the method's message form and the failure's text, leaves the store as it was
// and no transaction open, and the next call succeeds.
#include "tests/support/forwarding_connection.h"
#include "tests/support/method_calls.h"
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

class FailingCallsTest : public ShopTest {
 protected:
  FailingCallsTest() {
    Reset();
    shop_.reset();  // the object below opens its connection through the hook
    HookStoreOperations([this](const std::string&) {
      if (plan_.failAt == 0 || ++plan_.seen != plan_.failAt) return;
      plan_.fired = true;
      throw store::BackendError(plan_.kind, "disk I/O error");
    });
    shop_ = std::make_unique<brindleway>();
  }
  ~FailingCallsTest() override {
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
  // The call has failed with `text` and changed nothing; the next one succeeds.
  void ExpectFailedCall(const MethodCall& method, Integer status, const String& text,
                        const std::vector<SqlRow>& before) {
    EXPECT_EQ(status, -1);
    EXPECT_EQ(msg_, "<CompError: brindleway." + String(method.name) + "> " + text);
    EXPECT_EQ(OrdersAndBasket(store_), before);
    EXPECT_THROW(dao::DBEngine().Workspaces(0)->Rollback(), platform::Error)
        << "a transaction stayed open";
    plan_ = {};
    EXPECT_GE(method.call(*shop_, msg_), 0) << "the next call failed: " << msg_;
  }

  FaultPlan plan_;
};

// A reader elsewhere stands on its first row throughout, and stops no write.
TEST_F(FailingCallsTest, AFaultOrAWriterElsewhereAnswersMinusOneAndChangesNothing) {
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
  int faults = 0;
  for (const MethodCall& method : StoreMethodCalls(kIds)) {
    for (const auto& [kind, text] : kinds) {
      for (int k = 1;; ++k) {
        SCOPED_TRACE(std::string(method.name) + ", " + text + ", operation " + std::to_string(k));
        Reset();
        plan_ = {k, kind};
        const Integer status = method.call(*shop_, msg_);
        if (!plan_.fired) {  // the method finished before its k-th operation
          EXPECT_GE(status, 0) << msg_;
          break;
        }
        ++faults;
        ExpectFailedCall(method, status, text, start);
      }
    }
  }
  RecordProperty("faults_injected", faults);
  plan_ = {};
  // A writer elsewhere holds the store until the busy timeout, so only the methods with a
  // transaction meet it here.
  for (const MethodCall& method : StoreMethodCalls(kIds, 4)) {
    SCOPED_TRACE(method.name);
    Reset();
    auto writer = store::OpenEngineConnection(store_);
    writer->Begin(1);
    const Integer status = method.call(*shop_, msg_);
    writer->Rollback(1);
    ExpectFailedCall(method, status, "Could not update; currently locked.", start);
  }
}

// The readers and the deletions answer -1; the four transaction methods fail as calls, since
// their Rollback has no workspace, with ReturnMsg already written.
TEST_F(FailingCallsTest, AfterDbDisconnectEveryMethodFails) {
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
}

}  // namespace
}  // namespace brindlewayProj::testing
