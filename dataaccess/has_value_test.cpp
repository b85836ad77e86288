// HasValue by its rules, with the trim written back where the value came from.
#include <gtest/gtest.h>

#include <brindleway/collection.h>
#include "dataaccess/field_like_test.h"

namespace brindlewayProj {
namespace {

using testing::FieldHolding;

TEST(HasValueTest, AnswersByKind) {
  for (Variant value : {Variant::Missing(), Variant(), Variant::Null(), Variant("   "),
                        Variant(Date{0}), Variant(nullptr), FieldHolding(Variant::Null()),
                        FieldHolding("  "), FieldHolding(Date{0})}) {
    EXPECT_FALSE(HasValue(value)) << value.vt();
  }
  for (Variant value :
       {Variant("\t"), Variant(Date{0.5}), Variant(Integer{0}), Variant(Long{0}), Variant(false),
        Variant::Error(5), Variant(std::make_shared<Collection>()), FieldHolding(Long{0})}) {
    EXPECT_TRUE(HasValue(value)) << value.vt();
  }
}

TEST(HasValueTest, TrimIsWrittenBackWhereTheValueCameFrom) {
  Variant client("   ");
  EXPECT_FALSE(HasValue(client));
  EXPECT_EQ(client.AsString(), "");

  String member = "  /srv/shop.mdb ";
  Variant reference = Variant::ByRef(member);
  EXPECT_TRUE(HasValue(reference));
  EXPECT_EQ(member, "/srv/shop.mdb");

  // A temporary holding a field takes the trimmed text; the field keeps its own.
  const auto field = std::make_shared<testing::FieldLike>(" Ann ");
  Variant temporary(field);
  EXPECT_TRUE(HasValue(temporary));
  EXPECT_EQ(temporary.AsString(), "Ann");
  EXPECT_EQ(field->DefaultValue().AsString(), " Ann ");

  EXPECT_EQ(Trim("\t a \t "), "\t a \t");  // blanks only
}

}  // namespace
}  // namespace brindlewayProj
