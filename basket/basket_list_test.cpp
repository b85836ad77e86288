// BasketList and GetOrderedProducts side by side: names as stored with "<Empty>" for Null, a
// list left alone when no row is found, and a caller's list that is Nothing.
#include <algorithm>

#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

using ListMethod = Integer (brindleway::*)(String&, brindleway::CollectionRef&, Long&);

struct Twin {
  const char* name;
  ListMethod method;
  std::vector<String> namesOfOrder1;  // in the order the method delivers them, when it fixes one
  bool ordered;
};
void PrintTo(const Twin& twin, std::ostream* out) { *out << twin.name; }

class ProductNameListTest : public ShopTest, public ::testing::WithParamInterface<Twin> {
 protected:
  Integer List(Long orderId) { return ((*shop_).*GetParam().method)(msg_, names_, orderId); }
  String Message(const char* level, const String& text) const {
    return String("<") + level + ": brindleway." + GetParam().name + "> " + text;
  }
  brindleway::CollectionRef names_ = std::make_shared<Collection>();
};

TEST_P(ProductNameListTest, ReadsNamesAsStoredAndKeepsTheListWhenNoneIsFound) {
  Sql("INSERT INTO Products VALUES (1, 'Pear', 'V', 1), (2, 'Apple', 'V', 2), (3, NULL, 'V', 3),"
      " (4, '', 'V', 4);"
      "INSERT INTO Orders (OrderId, CustomerId) VALUES (1, 17), (2, 17), (3, 17);"
      "INSERT INTO OrderBasket VALUES (1, 1, 1), (1, 2, 1), (1, 3, 1), (1, 2, 3), (1, 4, 1),"
      " (1, 3, 2), (2, 8, 1);");
  names_->Add(Variant("stale"));
  const auto count = static_cast<Integer>(GetParam().namesOfOrder1.size());
  EXPECT_EQ(List(1), count);
  EXPECT_EQ(msg_, Message("CompInfo", "Found " + std::to_string(count) + " records"));
  std::vector<String> items = Entries(names_), expected = GetParam().namesOfOrder1;
  if (!GetParam().ordered) {
    std::sort(items.begin(), items.end());
    std::sort(expected.begin(), expected.end());
  }
  EXPECT_EQ(items, expected);

  EXPECT_EQ(List(2), 1);
  EXPECT_EQ(Entries(names_), std::vector<String>{" Mug "});
  for (Long orderId : {3, 0, -7}) {
    EXPECT_EQ(List(orderId), 0);
    EXPECT_EQ(msg_, Message("CompWarning", "Did not find any records"));
    EXPECT_EQ(Entries(names_), std::vector<String>{" Mug "});
  }
  names_ = nullptr;
  EXPECT_EQ(List(3), 0);
  EXPECT_EQ(List(1), -1);
  EXPECT_EQ(msg_, Message("CompError", "Object variable or With block variable not set"));
}

INSTANTIATE_TEST_SUITE_P(
    Twins, ProductNameListTest,
    ::testing::Values(Twin{"BasketList",
                           &brindleway::BasketList,
                           {"<Empty>", "<Empty>", "", "Apple", "Apple", "Pear"},
                           true},
                      Twin{"GetOrderedProducts",
                           &brindleway::GetOrderedProducts,
                           {"<Empty>", "", "Apple", "Pear"},
                           false}),
    [](const ::testing::TestParamInfo<Twin>& info) { return String(info.param.name); });

}  // namespace
}  // namespace brindlewayProj::testing
