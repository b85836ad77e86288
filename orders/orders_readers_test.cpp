// The order listings and OrderDetail against a real store file, with US English dates.
#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

class OrderReadersTest : public ShopTest {
 protected:
  OrderReadersTest() {
    Sql("INSERT INTO Orders VALUES (42, 17, '1999-03-14 00:00:00', NULL, 0, 'Gift wrap'),"
        " (43, 17, '1999-03-10 00:00:00', '1999-03-20 00:00:00', 1, NULL),"
        " (44, 17, '1999-03-16 14:05:00', NULL, 2, '   '),"
        " (45, 18, '1999-03-01 00:00:00', NULL, 0, ' lead');"
        "INSERT INTO Orders VALUES (46, 0, NULL, '1899-12-30 00:00:00', 0, '  ');");
  }
  std::shared_ptr<Collection> lines_ = std::make_shared<Collection>();
  Long customer_ = 17;
};

TEST_F(OrderReadersTest, ListingsTextEachRowAndDefaultAnEmptySeparator) {
  String separator;
  EXPECT_EQ(shop_->ListOfOrders(msg_, lines_, separator, customer_), 3);
  EXPECT_EQ(msg_, "<CompInfo: brindleway.ListOfOrders> Found 3 records");
  EXPECT_EQ(separator, ", ");
  EXPECT_EQ(Entries(lines_),
            (std::vector<String>{"44, 3/16/99 2:05:00 PM, <Empty>", "42, 3/14/99, Gift wrap",
                                 "43, 3/10/99, <Empty>"}));

  separator = " | ";
  Integer ignored = 1;
  EXPECT_EQ(shop_->ListOpenOrders(msg_, lines_, separator, customer_, ignored), 1);
  EXPECT_EQ(Entries(lines_), std::vector<String>{"42 | 3/14/99 | Gift wrap"});
  EXPECT_EQ(ignored, 1);

  EXPECT_EQ(shop_->ListShippedOrders(msg_, lines_, separator, customer_), 1);
  EXPECT_EQ(msg_, "<CompInfo: brindleway.ListShippedOrders> Found 1 records");
  EXPECT_EQ(Entries(lines_), std::vector<String>{"43 | 3/10/99 | 3/20/99 | <Empty>"});

  Long other = 18;
  separator = "";
  EXPECT_EQ(shop_->ListOfOrders(msg_, lines_, separator, other), 1);
  EXPECT_EQ(Entries(lines_), std::vector<String>{"45, 3/1/99,  lead"});
}

TEST_F(OrderReadersTest, ListingWithoutRowsLeavesCollectionAndSeparatorAlone) {
  Long nobody = 99;
  String separator;
  lines_->Add(Variant("kept"));
  EXPECT_EQ(shop_->ListShippedOrders(msg_, lines_, separator, nobody), 0);
  EXPECT_EQ(msg_, "<CompWarning: brindleway.ListShippedOrders> Did not find any records");
  EXPECT_EQ(Entries(lines_), std::vector<String>{"kept"});
  EXPECT_EQ(separator, "");

  std::shared_ptr<Collection> nothing;
  EXPECT_EQ(shop_->ListOfOrders(msg_, nothing, separator, customer_), -1);
  EXPECT_EQ(msg_,
            "<CompError: brindleway.ListOfOrders> Object variable or With block variable "
            "not set");
}

TEST_F(OrderReadersTest, OrderDetailWritesOnlyFieldsThatHaveAValue) {
  struct Outs {
    Long customer = -1;
    String first = "f", last = "l";
    Date ordered{1}, delivered{2};
    Integer delivery = -1;
    String description = "d";
  };
  Long order = 43;
  Outs o;
  EXPECT_EQ(shop_->OrderDetail(msg_, o.customer, o.first, o.last, o.ordered, o.delivered,
                               o.delivery, o.description, order),
            1);
  EXPECT_EQ(msg_, "<CompInfo: brindleway.OrderDetail> Found 1 records");
  EXPECT_EQ(o.customer, 17);
  EXPECT_EQ(o.first, " Ann");
  EXPECT_EQ(o.last, "Lee");
  EXPECT_EQ(o.ordered, DateSerial(1999, 3, 10));
  EXPECT_EQ(o.delivered, DateSerial(1999, 3, 20));
  EXPECT_EQ(o.delivery, 1);
  EXPECT_EQ(o.description, "d");

  order = 46;  // customer 0 and Delivery 0 are values; Null, zero date and blanks are not
  Outs p;
  EXPECT_EQ(shop_->OrderDetail(msg_, p.customer, p.first, p.last, p.ordered, p.delivered,
                               p.delivery, p.description, order),
            1);
  EXPECT_EQ(p.customer, 0);
  EXPECT_EQ(p.delivery, 0);
  EXPECT_EQ(p.first + p.last + p.description, "fld");
  EXPECT_EQ(p.ordered, Date{1});
  EXPECT_EQ(p.delivered, Date{2});

  order = 99;
  Outs q;
  EXPECT_EQ(shop_->OrderDetail(msg_, q.customer, q.first, q.last, q.ordered, q.delivered,
                               q.delivery, q.description, order),
            0);
  EXPECT_EQ(msg_, "<CompWarning: brindleway.OrderDetail> Did not find any records");
  EXPECT_EQ(q.customer + q.delivery, -2);
}

}  // namespace
}  // namespace brindlewayProj::testing
