// BasketList and GetOrderedProducts, side by side, on a real store file with baskets of
// every size that matters (none, one row, Null and empty names, 32767 and 32768 rows).
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <memory>
#include <vector>

#include <brindleway/brindleway.h>
#include <brindleway/hooks.h>
#include "tests/support/test_support.h"

namespace brindlewayProj {
namespace {

using ListMethod = Integer (brindleway::*)(String&, brindleway::CollectionRef&, Long&);

struct Twin {
  const char* name;
  ListMethod method;
  std::vector<String> namesOfOrder1;  // in the order the method delivers them, when it fixes one
  bool ordered;
};
void PrintTo(const Twin& twin, std::ostream* out) { *out << twin.name; }

// Orders: 1 with Pear, Apple, Apple, a Null and an empty name; 2 with one row; 3 empty;
// 10 and 11 with 32767 and 32768 rows of distinct products.
constexpr const char* kBaskets = R"sql(
  INSERT INTO Customers VALUES (1, 'Ada', 'Quill');
  INSERT INTO Products VALUES (1, 'Pear', 'V', 1), (2, 'Apple', 'V', 2), (3, NULL, 'V', 3),
                              (4, '', 'V', 4), (5, 'Fig', 'V', 5);
  INSERT INTO Orders (OrderId, CustomerId) VALUES (1, 1), (2, 1), (3, 1), (10, 1), (11, 1);
  INSERT INTO OrderBasket VALUES (1, 1, 1), (1, 2, 1), (1, 2, 3), (1, 3, 1), (1, 4, 1), (2, 5, 1);
  WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 32768)
    INSERT INTO Products SELECT 1000 + i, 'P' || i, 'V', 1 FROM n;
  INSERT INTO OrderBasket SELECT 10, ProductId, 1 FROM Products WHERE ProductId BETWEEN 1001 AND 33767;
  INSERT INTO OrderBasket SELECT 11, ProductId, 1 FROM Products WHERE ProductId > 1000;
)sql";

class ProductNameListTest : public ::testing::TestWithParam<Twin> {
 protected:
  static void SetUpTestSuite() {
    dir_ = std::make_unique<testing::TempDir>();
    const auto file = testing::MakeStore(*dir_, false);
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &db), SQLITE_OK);
    const int rc = sqlite3_exec(db, kBaskets, nullptr, nullptr, nullptr);
    const String error = sqlite3_errmsg(db);
    sqlite3_close(db);
    ASSERT_EQ(rc, SQLITE_OK) << error;
  }
  static void TearDownTestSuite() { dir_.reset(); }

  ProductNameListTest() {
    platform::App::SetPath(dir_->path().string());
    object_ = std::make_unique<brindleway>();
  }
  ~ProductNameListTest() override { platform::App::SetPath(""); }

  Integer List(Long orderId) { return ((*object_).*GetParam().method)(message_, names_, orderId); }
  String Message(const char* level, const String& text) const {
    return String("<") + level + ": brindleway." + GetParam().name + "> " + text;
  }
  std::vector<String> Items() const {
    std::vector<String> items;
    for (Long i = 1; i <= names_->Count(); ++i) items.push_back(CStr(names_->Item(i)));
    return items;
  }
  void FillWithStaleItem() { names_->Add(Variant("stale")); }

  static std::unique_ptr<testing::TempDir> dir_;
  testing::MessageBoxRecorder boxes_;
  std::unique_ptr<brindleway> object_;
  brindleway::CollectionRef names_ = std::make_shared<Collection>();
  String message_;
};
std::unique_ptr<testing::TempDir> ProductNameListTest::dir_;

TEST_P(ProductNameListTest, RowsFoundReplaceTheListAndNullNamesReadEmpty) {
  FillWithStaleItem();
  const Integer count = static_cast<Integer>(GetParam().namesOfOrder1.size());
  EXPECT_EQ(List(1), count);
  EXPECT_EQ(message_, Message("CompInfo", "Found " + std::to_string(count) + " records"));
  std::vector<String> items = Items();
  std::vector<String> expected = GetParam().namesOfOrder1;
  if (!GetParam().ordered) {
    std::sort(items.begin(), items.end());
    std::sort(expected.begin(), expected.end());
  }
  EXPECT_EQ(items, expected);

  EXPECT_EQ(List(2), 1);
  EXPECT_EQ(message_, Message("CompInfo", "Found 1 records"));
  EXPECT_EQ(Items(), std::vector<String>{"Fig"});
}

TEST_P(ProductNameListTest, NoRowsLeaveTheListAsItWas) {
  FillWithStaleItem();
  for (Long orderId : {3, 0, -7}) {
    EXPECT_EQ(List(orderId), 0);
    EXPECT_EQ(message_, Message("CompWarning", "Did not find any records"));
    EXPECT_EQ(Items(), std::vector<String>{"stale"});
  }
  names_ = nullptr;
  EXPECT_EQ(List(3), 0);
}

TEST_P(ProductNameListTest, FailuresAnswerMinusOneWithTheirDescription) {
  names_ = nullptr;
  EXPECT_EQ(List(1), -1);
  EXPECT_EQ(message_, Message("CompError", "Object variable or With block variable not set"));

  names_ = std::make_shared<Collection>();
  FillWithStaleItem();
  String ignored;
  object_->DbDisconnect(ignored);
  EXPECT_EQ(List(1), -1);
  EXPECT_EQ(message_, Message("CompError", "Object variable or With block variable not set"));
  EXPECT_EQ(Items(), std::vector<String>{"stale"});
}

TEST_P(ProductNameListTest, CountsUpTo32767AndOverflowsBeforeTouchingTheList) {
  EXPECT_EQ(List(10), 32767);
  EXPECT_EQ(names_->Count(), 32767);
  EXPECT_EQ(message_, Message("CompInfo", "Found 32767 records"));

  names_ = std::make_shared<Collection>();
  FillWithStaleItem();
  EXPECT_EQ(List(11), -1);
  EXPECT_EQ(message_, Message("CompError", "Overflow"));
  EXPECT_EQ(Items(), std::vector<String>{"stale"});
}

INSTANTIATE_TEST_SUITE_P(Twins, ProductNameListTest,
                         ::testing::Values(Twin{"BasketList",
                                                &brindleway::BasketList,
                                                {"<Empty>", "", "Apple", "Apple", "Pear"},
                                                true},
                                           Twin{"GetOrderedProducts",
                                                &brindleway::GetOrderedProducts,
                                                {"<Empty>", "", "Apple", "Pear"},
                                                false}),
                         [](const ::testing::TestParamInfo<Twin>& info) {
                           return String(info.param.name);
                         });

}  // namespace
}  // namespace brindlewayProj
