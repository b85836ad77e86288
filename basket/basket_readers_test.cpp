// The basket table and the product lookups on what the order and basket run does not meet:
// the recordset handed over, Null quantities, names with blanks and quotes.
#include "store/dialect.h"
#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

class BasketReadersTest : public ShopTest {
 protected:
  BasketReadersTest() {
    Sql("INSERT INTO Orders (OrderId, CustomerId, Delivery) VALUES (42, 17, 0), (43, 18, 0);"
        "INSERT INTO OrderBasket VALUES (42, 7, 3), (42, 7, 5), (42, 8, NULL), (43, 8, 2);");
  }
  Long order_ = 42;
};

TEST_F(BasketReadersTest, BasketTableHandsOverAnOpenRecordsetOnItsFirstRow) {
  std::shared_ptr<dao::Recordset> rows;
  EXPECT_EQ(shop_->BasketTable(msg_, rows, order_), 3);
  EXPECT_EQ(msg_, "<CompInfo: brindleway.BasketTable> Found 3 records");
  ASSERT_TRUE(rows);
  EXPECT_EQ(rows->Fields()->Count(), 5);
  EXPECT_EQ(rows->Fields()->Item(Long(4))->Name(), "Extended Price");
  EXPECT_FALSE(rows->Bof());
  rows->MovePrevious();
  EXPECT_TRUE(rows->Bof()) << "the cursor was not on the first row";

  std::weak_ptr<dao::Recordset> before = rows;
  Long empty = 99;
  EXPECT_EQ(shop_->BasketTable(msg_, rows, empty), 0);
  EXPECT_EQ(msg_, "<CompWarning: brindleway.BasketTable> Did not find any records");
  EXPECT_TRUE(before.expired());
  ASSERT_TRUE(rows);
  EXPECT_TRUE(rows->Eof());
}

// A Null quantity is not written; a name with quotes changes the query, which the store refuses
// or finds nothing with, and nothing is written either way.
TEST_F(BasketReadersTest, LookupsReadTheFirstRowAsStored) {
  String name = "kept", mug = " Mug ", pot = "Pot";
  Long quantity = -1, single = 43, potId = 9;
  EXPECT_EQ(shop_->LookupOrderedProduct(msg_, name, quantity, mug), 2);
  EXPECT_EQ(msg_, "<CompInfo: brindleway.LookupOrderedProduct> Found 2 records");
  EXPECT_EQ(name, " Mug ");

  Sql("INSERT INTO Products VALUES (9, 'Pot', 'Clayworks', 20);"
      "INSERT INTO OrderBasket VALUES (43, 9, NULL)");
  quantity = -1;
  EXPECT_EQ(shop_->LookupOrderedProduct(msg_, name, quantity, pot), 1);
  EXPECT_EQ(shop_->QuantityOrdered(msg_, quantity, single, potId), 1);
  EXPECT_EQ(name + std::to_string(quantity), "Pot-1") << "a Null quantity was written";

  for (String quoted :
       {String("Te\"a"), String("Tea\" ) Union Select [FirstName], [CustomerId] From "
                                "[Customers] Where ( \"1\" = \"1")}) {
    name = "kept";
    const Integer status = shop_->LookupOrderedProduct(msg_, name, quantity, quoted);
    EXPECT_LE(status, 0) << msg_;
    EXPECT_EQ(msg_.rfind(status < 0 ? "<CompError: " : "<CompWarning: ", 0), 0u) << msg_;
    EXPECT_EQ(name + std::to_string(quantity), "kept-1");
  }
}

// A name that nests parentheses and Not deeper than the parser allows is refused as any other
// syntax error, however deep it goes; up to the limit the store runs the query. The query's
// own "( [ProductName] = ..." is one level.
TEST_F(BasketReadersTest, DeepNestingInANameIsASyntaxErrorNotACrash) {
  const int limit = store::dialect::kMaxNesting;
  // The opening and closing pieces, how often they nest, and whether that is refused.
  const std::tuple<std::string_view, std::string_view, int, bool> cases[] = {
      {"(", ")", limit - 1, false}, {"Not (", ")", (limit - 1) / 2, false},
      {"(", ")", limit, true},      {"Not (", ")", limit / 2, true},
      {"(", ")", 20'000, true},     {"Not ", "", 100'000, true},
  };
  for (const auto& [open, close, count, refused] : cases) {
    String product = "x\" Or ";
    for (int i = 0; i < count; ++i) product += open;
    product += "\"1\" = \"1\"";
    for (int i = 0; i < count; ++i) product += close;
    product += " Or \"1";
    String name = "kept";
    Long quantity = -1;
    const Integer status = shop_->LookupOrderedProduct(msg_, name, quantity, product);
    if (refused) {
      const String clause = "( [ProductName] = \"" + product + "\" )";
      const String expected =
          "<CompError: brindleway.LookupOrderedProduct> Syntax error in query expression '" +
          clause + "'.";
      EXPECT_EQ(status, -1) << open << " x" << count;
      EXPECT_TRUE(msg_ == expected) << open << " x" << count << ": " << msg_.substr(0, 200);
    } else {
      EXPECT_GT(status, 0) << open << " x" << count << ": " << msg_;
    }
  }
}

}  // namespace
}  // namespace brindlewayProj::testing
