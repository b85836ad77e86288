// Failures from below the object model, injected on demand into the backend (busy, full,
// read-only, duplicate, relationship, any other): each writing method answers -1 with the
// store's exact text, leaves both tables as they were and no transaction open behind it.
#include <functional>

#include "store/backend.h"
#include "store/errors.h"
#include "store/sqlite_backend.h"
#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

using store::FailureKind;

// Fails the next backend call whose SQL starts with `prefix` ("BEGIN", "COMMIT" and "RESERVE"
// stand for those calls) with `kind`, once.
struct FaultPlan {
  std::string prefix;
  FailureKind kind = FailureKind::kOther;
  void Check(const std::string& sql) {
    if (prefix.empty() || sql.rfind(prefix, 0) != 0) return;
    prefix.clear();
    throw store::BackendError(kind, "injected fault");
  }
};

class FaultyConnection : public store::Connection {
 public:
  FaultyConnection(std::shared_ptr<store::Connection> inner, FaultPlan& plan)
      : inner_(std::move(inner)), plan_(plan) {}
  store::Statement& Prepare(const std::string& sql) override { return inner_->Prepare(sql); }
  long long Execute(const std::string& sql, const std::vector<store::SqlValue>& values) override {
    plan_.Check(sql);
    return inner_->Execute(sql, values);
  }
  std::optional<store::SourceInfo> Describe(const std::string& name) override {
    return inner_->Describe(name);
  }
  std::int64_t LastRowId() override { return inner_->LastRowId(); }
  std::int64_t ReserveKey(const store::SourceInfo& table) override {
    plan_.Check("RESERVE");
    return inner_->ReserveKey(table);
  }
  void Begin() override {
    plan_.Check("BEGIN");
    inner_->Begin();
  }
  void Commit() override {
    plan_.Check("COMMIT");
    inner_->Commit();
  }
  void Rollback() override { inner_->Rollback(); }

 private:
  std::shared_ptr<store::Connection> inner_;
  FaultPlan& plan_;
};

class StoreFaultsTest : public ShopTest {
 protected:
  static void SetUpTestSuite() {
    store::SetConnectionOpenerForTesting([](const std::filesystem::path& file) {
      return std::make_shared<FaultyConnection>(store::OpenSqliteConnection(file), plan);
    });
  }
  static void TearDownTestSuite() { store::SetConnectionOpenerForTesting(nullptr); }
  StoreFaultsTest() {
    Sql("INSERT INTO Orders VALUES (42, 17, '1999-03-14 00:00:00', NULL, 0, 'x');"
        "INSERT INTO OrderBasket VALUES (42, 7, 3), (42, 8, 1);");
  }
  // Both tables in one text.
  std::string Tables() {
    return Scalar(
        "SELECT (SELECT group_concat(OrderId || CustomerId || ifnull(DeliveryDate, '')"
        " || Delivery) FROM Orders) || '/' || (SELECT group_concat(OrderId || '-' ||"
        " ProductId || '-' || Quantity) FROM OrderBasket)");
  }
  static FaultPlan plan;
};
FaultPlan StoreFaultsTest::plan;

TEST_F(StoreFaultsTest, EveryWriteAnswersTheStoresTextAndChangesNothing) {
  const String locked = "Could not update; currently locked.", full = "Not enough space on disk.",
               readOnly = "Cannot update. Database or object is read-only.";
  Long key = 0, order = 42, customer = 17, tea = 7, quantity = 2;
  Date date = DateSerial(1999, 3, 20);
  Integer shipped = 1;
  Variant none, open(Integer(0)), five(Long(5));
  auto start = [&] { return shop_->StartNewOrder(msg_, key, customer, none, none, open); };
  auto buy = [&] { return shop_->ProductToBuy(msg_, order, tea, quantity); };
  auto modify = [&] { return shop_->ModifyOrderQuantity(msg_, order, tea, five); };
  auto ship = [&] { return shop_->BuyAnOrder(msg_, order, date, shipped); };
  const std::tuple<const char*, FailureKind, String, std::function<Integer()>> cases[] = {
      {"RESERVE", FailureKind::kReadOnly, "StartNewOrder> " + readOnly, start},
      {"INSERT", FailureKind::kFull, "StartNewOrder> " + full, start},
      {"COMMIT", FailureKind::kBusy, "StartNewOrder> " + locked, start},
      {"INSERT", FailureKind::kUnique,
       "ProductToBuy> The changes you requested to the table were not successful because they "
       "would create duplicate values in the index, primary key, or relationship. Change the data "
       "in the field or fields that contain duplicate data, remove the index, or redefine the "
       "index to permit duplicate entries and try again.",
       buy},
      {"COMMIT", FailureKind::kFull, "ProductToBuy> " + full, buy},
      {"UPDATE", FailureKind::kReadOnly, "ModifyOrderQuantity> " + readOnly, modify},
      {"UPDATE", FailureKind::kOther, "BuyAnOrder> injected fault", ship},
      {"COMMIT", FailureKind::kBusy, "BuyAnOrder> " + locked, ship},
      {"DELETE", FailureKind::kBusy, "RemoveFromBasket> " + locked,
       [&] { return shop_->RemoveFromBasket(msg_, order, tea); }},
      {"DELETE", FailureKind::kForeignKey,
       "DeleteAnOrder> The record cannot be deleted or changed because another table includes "
       "related records.",
       [&] { return shop_->DeleteAnOrder(msg_, order); }},
  };
  const std::string before = Tables();
  for (auto& [at, kind, message, call] : cases) {
    plan = {at, kind};
    EXPECT_EQ(call(), -1) << message;
    EXPECT_EQ(msg_, "<CompError: brindleway." + message);
    EXPECT_EQ(plan.prefix, "") << "no call reached " << at;
    EXPECT_EQ(Tables(), before) << message;
    EXPECT_EQ(shop_->ModifyOrderQuantity(msg_, order, tea), 1) << "a transaction stayed open";
  }

  // A BeginTrans that fails leaves the Rollback of the failure path nothing to end: the call
  // fails as a call, with the first failure's text written.
  plan = {"BEGIN", FailureKind::kBusy};
  try {
    buy();
    ADD_FAILURE() << "the call did not fail";
  } catch (const platform::Error& failure) {
    EXPECT_EQ(failure.Number(), store::errNoTransaction);
  }
  EXPECT_EQ(msg_, "<CompError: brindleway.ProductToBuy> " + locked);
  EXPECT_EQ(Tables(), before);
}

}  // namespace
}  // namespace brindlewayProj::testing
