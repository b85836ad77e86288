// HasValue on the kinds the component's own calls do not pass (those are checked through the
// readers and writers): tabs are no blanks, an Error and an object are values, Nothing and a
// Field without value are not; the trim reaches the caller's variable through a reference.
#include <gtest/gtest.h>

#include <brindleway/collection.h>
#include "dataaccess/field_like_test.h"

namespace brindlewayProj {
namespace {

using testing::FieldHolding;

TEST(HasValueTest, AnswersByKindAndTrimsWhereTheValueCameFrom) {
  for (Variant value : {Variant::Missing(), Variant(), Variant(nullptr), FieldHolding("  "),
                        FieldHolding(Date{0})}) {
    EXPECT_FALSE(HasValue(value)) << value.vt();
  }
  for (Variant value : {Variant("\t"), Variant(Date{0.5}), Variant(false), Variant::Error(5),
                        Variant(std::make_shared<Collection>()), FieldHolding(Long{0})}) {
    EXPECT_TRUE(HasValue(value)) << value.vt();
  }
  String member = "  /srv/shop.mdb ";
  Variant reference = Variant::ByRef(member);
  EXPECT_TRUE(HasValue(reference));
  EXPECT_EQ(member, "/srv/shop.mdb");
  EXPECT_EQ(Trim("\t a \t "), "\t a \t");  // blanks only
}

}  // namespace
}  // namespace brindlewayProj
