// The order listings and OrderDetail on stored rows the order and basket run does not make:
// Null and zero dates, blank and padded texts, customer 0, and a caller's list that is Nothing.
#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

class OrderReadersTest : public ShopTest {
 protected:
  OrderReadersTest() {
    Sql("INSERT INTO Orders VALUES (42, 17, '1999-03-14 00:00:00', '1899-12-30 00:00:00', 1,"
        " ' lead'), (43, 17, NULL, NULL, 1, '   '), (44, 17, '1999-03-16 14:05:00', NULL, 0, 'x'),"
        " (46, 0, NULL, '1899-12-30 00:00:00', 0, '  ');");
  }
  std::shared_ptr<Collection> lines_ = std::make_shared<Collection>();
  Long customer_ = 17;
};

TEST_F(OrderReadersTest, ListingsWriteEmptyForFieldsWithoutAValue) {
  String separator = " | ";
  EXPECT_EQ(shop_->ListShippedOrders(msg_, lines_, separator, customer_), 2);
  EXPECT_EQ(Entries(lines_), (std::vector<String>{"42 | 3/14/99 | <Empty> |  lead",
                                                  "43 | <Empty> | <Empty> | "
                                                  "<Empty>"}));
  Integer ignored = 1;
  EXPECT_EQ(shop_->ListOpenOrders(msg_, lines_, separator, customer_, ignored), 1);
  EXPECT_EQ(Entries(lines_), std::vector<String>{"44 | 3/16/99 2:05:00 PM | x"});
  EXPECT_EQ(ignored, 1);

  std::shared_ptr<Collection> nothing;
  EXPECT_EQ(shop_->ListOfOrders(msg_, nothing, separator, customer_), -1);
  EXPECT_EQ(msg_,
            "<CompError: brindleway.ListOfOrders> Object variable or With block variable "
            "not set");
}

TEST_F(OrderReadersTest, OrderDetailWritesOnlyFieldsThatHaveAValue) {
  Long order = 46, customer = -1;
  String first = "f", last = "l", description = "d";
  Date ordered{1}, delivered{2};
  Integer delivery = -1;
  EXPECT_EQ(shop_->OrderDetail(msg_, customer, first, last, ordered, delivered, delivery,
                               description, order),
            1);
  EXPECT_EQ(msg_, "<CompInfo: brindleway.OrderDetail> Found 1 records");
  EXPECT_EQ(customer, 0);  // 0 is a value; Null, the zero date and blanks are not
  EXPECT_EQ(delivery, 0);
  EXPECT_EQ(first + last + description, "fld");
  EXPECT_EQ(ordered, Date{1});
  EXPECT_EQ(delivered, Date{2});

  order = 42;
  EXPECT_EQ(shop_->OrderDetail(msg_, customer, first, last, ordered, delivered, delivery,
                               description, order),
            1);
  EXPECT_EQ(first + "|" + last + "|" + description, " Ann|Lee| lead");
  EXPECT_EQ(ordered, DateSerial(1999, 3, 14));
  EXPECT_EQ(delivered, Date{2});
}

}  // namespace
}  // namespace brindlewayProj::testing
