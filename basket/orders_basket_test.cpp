// Basket changes, the basket table and the product lookups against a real store file.
#include "store/dialect.h"
#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

class BasketChangesTest : public ShopTest {
 protected:
  BasketChangesTest() {
    Sql("INSERT INTO Orders (OrderId, CustomerId, Delivery) VALUES (42, 17, 0), (43, 18, 0);"
        "INSERT INTO OrderBasket VALUES (42, 7, 3), (42, 7, 5), (42, 8, NULL), (43, 8, 2);");
  }
  Long order_ = 42, tea_ = 7, mug_ = 8;
};

TEST_F(BasketChangesTest, ModifyOrderQuantityWritesTheConvertedQuantityIntoOneRow) {
  struct Case {
    Variant quantity;
    String stored, afterwards;  // the row's quantities; the caller's Variant after the call
  } cases[] = {
      {Variant(" 7 "), "7,5", "7"},           {Variant(2.5), "2,5", "2.5"},
      {Variant::Missing(), "3,5", "missing"}, {Variant("   "), "3,5", ""},
      {Variant(Long(0)), "0,5", "0"},
  };
  for (auto& c : cases) {
    Sql("UPDATE OrderBasket SET Quantity = 3 WHERE rowid = 1");
    EXPECT_EQ(shop_->ModifyOrderQuantity(msg_, order_, tea_, c.quantity), 1);
    EXPECT_EQ(msg_, "<CompInfo: brindleway.ModifyOrderQuantity> Success");
    EXPECT_EQ(Scalar("SELECT group_concat(Quantity) FROM OrderBasket WHERE ProductId = 7 AND "
                     "OrderId = 42"),
              c.stored);
    EXPECT_EQ(IsMissing(c.quantity) ? "missing" : JoinText(c.quantity), c.afterwards);
  }
  Variant word("seven");
  EXPECT_EQ(shop_->ModifyOrderQuantity(msg_, order_, tea_, word), -1);
  EXPECT_EQ(msg_, "<CompError: brindleway.ModifyOrderQuantity> Type mismatch");
}

TEST_F(BasketChangesTest, MissesAnswerZeroAndLeaveNoTransactionOpen) {
  Long nothing = 99;
  EXPECT_EQ(shop_->ModifyOrderQuantity(msg_, nothing, tea_), 0);
  EXPECT_EQ(msg_, "<CompInfo: brindleway.ModifyOrderQuantity> No records found. Nothing to update");
  Long one = 1;
  EXPECT_EQ(shop_->ProductToBuy(msg_, order_, tea_, one), 0) << msg_;
  EXPECT_EQ(shop_->RemoveFromBasket(msg_, order_, tea_), 3);
  EXPECT_EQ(msg_, "<CompInfo: brindleway.RemoveFromBasket> 3 records deleted");
  EXPECT_EQ(shop_->RemoveFromBasket(msg_, order_, tea_), 0);
  EXPECT_EQ(msg_, "<CompError: brindleway.RemoveFromBasket> No records found");
  EXPECT_EQ(Scalar("SELECT count(*) FROM OrderBasket"), "2");
}

TEST_F(BasketChangesTest, BasketTableHandsOverAnOpenRecordsetOnItsFirstRow) {
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

TEST_F(BasketChangesTest, LookupsReadTheFirstRowAsStored) {
  String name = "kept";
  Long quantity = -1;
  String mug = " Mug ";
  EXPECT_EQ(shop_->LookupOrderedProduct(msg_, name, quantity, mug), 2);
  EXPECT_EQ(msg_, "<CompInfo: brindleway.LookupOrderedProduct> Found 2 records");
  EXPECT_EQ(name, " Mug ");

  Long pot = 9, single = 43;
  String potName = "Pot";
  Sql("INSERT INTO Products VALUES (9, 'Pot', 'Clayworks', 20); INSERT INTO OrderBasket VALUES "
      "(43, 9, NULL)");
  quantity = -1;
  EXPECT_EQ(shop_->LookupOrderedProduct(msg_, name, quantity, potName), 1);
  EXPECT_EQ(shop_->QuantityOrdered(msg_, quantity, single, pot), 1);
  EXPECT_EQ(name + std::to_string(quantity), "Pot-1") << "a Null quantity was written";
  EXPECT_EQ(shop_->QuantityOrdered(msg_, quantity, single, mug_), 1);
  EXPECT_EQ(quantity, 2);

  for (String quoted :
       {String("Te\"a"), String("Tea\" ) Union Select [FirstName], [CustomerId] From "
                                "[Customers] Where ( \"1\" = \"1")}) {
    name = "kept";
    quantity = -1;
    Integer status = shop_->LookupOrderedProduct(msg_, name, quantity, quoted);
    EXPECT_LE(status, 0) << msg_;
    EXPECT_EQ(msg_.rfind(status < 0 ? "<CompError: " : "<CompWarning: ", 0), 0u) << msg_;
    EXPECT_EQ(name + std::to_string(quantity), "kept-1");
  }
}

// A name that nests parentheses and Not deeper than the parser allows is refused as any other
// syntax error, however deep it goes; up to the limit the store runs the query. The query's
// own "( [ProductName] = ..." is one level.
TEST_F(BasketChangesTest, DeepNestingInANameIsASyntaxErrorNotACrash) {
  const auto repeat = [](std::string_view piece, int count) {
    String text;
    for (int i = 0; i < count; ++i) text += piece;
    return text;
  };
  const int limit = store::dialect::kMaxNesting;
  const struct Case {
    std::string_view open, close;
    int count;
    bool refused;
  } cases[] = {
      {"(", ")", limit - 1, false}, {"Not (", ")", (limit - 1) / 2, false},
      {"(", ")", limit, true},      {"Not (", ")", limit / 2, true},
      {"(", ")", 20'000, true},     {"Not ", "", 100'000, true},
  };
  for (const Case& c : cases) {
    String product = "x\" Or " + repeat(c.open, c.count) + "\"1\" = \"1\"" +
                     repeat(c.close, c.count) + " Or \"1";
    String name = "kept";
    Long quantity = -1;
    const Integer status = shop_->LookupOrderedProduct(msg_, name, quantity, product);
    if (c.refused) {
      const String clause = "( [ProductName] = \"" + product + "\" )";
      const String expected =
          "<CompError: brindleway.LookupOrderedProduct> Syntax error in query expression '" +
          clause + "'.";
      EXPECT_EQ(status, -1) << c.open << " x" << c.count;
      EXPECT_TRUE(msg_ == expected) << c.open << " x" << c.count << ": " << msg_.substr(0, 200);
    } else {
      EXPECT_GT(status, 0) << c.open << " x" << c.count << ": " << msg_;
    }
  }
}

}  // namespace
}  // namespace brindlewayProj::testing
