// HasValue by its rules, with the trim written back where the value came from.
#include <gtest/gtest.h>

#include "dataaccess/collection.h"
#include "dataaccess/variant.h"

namespace brindlewayProj {
namespace {

class FieldLike : public Object {
 public:
  explicit FieldLike(Variant value) : value_(std::move(value)) {}
  bool HasDefaultValue() const override { return true; }
  Variant DefaultValue() const override { return value_; }

 private:
  Variant value_;
};

TEST(HasValueTest, AnswersByKind) {
  struct Case {
    const char* name;
    Variant value;
    bool given;
  };
  const Case cases[] = {
      {"missing", Variant::Missing(), false},
      {"Empty", Variant(), false},
      {"Null", Variant::Null(), false},
      {"blanks", Variant("   "), false},
      {"tab", Variant("\t"), true},
      {"Date 0", Variant(Date{0}), false},
      {"Date 0.5", Variant(Date{0.5}), true},
      {"Integer 0", Variant(Integer{0}), true},
      {"Long 0", Variant(Long{0}), true},
      {"Double 0", Variant(0.0), true},
      {"False", Variant(false), true},
      {"other Error", Variant::Error(5), true},
      {"Nothing", Variant(nullptr), false},
      {"object", Variant(std::make_shared<Collection>()), true},
      {"field Null", Variant(std::make_shared<FieldLike>(Variant::Null())), false},
      {"field blanks", Variant(std::make_shared<FieldLike>(Variant("  "))), false},
      {"field Date 0", Variant(std::make_shared<FieldLike>(Variant(Date{0}))), false},
      {"field 0", Variant(std::make_shared<FieldLike>(Variant(Long{0}))), true},
  };
  for (const Case& c : cases) {
    Variant value = c.value;
    EXPECT_EQ(HasValue(value), c.given) << c.name;
  }
}

TEST(HasValueTest, TrimIsWrittenBackWhereTheValueCameFrom) {
  Variant client("   ");
  EXPECT_FALSE(HasValue(client));
  EXPECT_EQ(client.AsString(), "");

  Variant padded(" x ");
  EXPECT_TRUE(HasValue(padded));
  EXPECT_EQ(padded.AsString(), "x");

  String member = "  /srv/shop.mdb ";
  Variant reference = Variant::ByRef(member);
  EXPECT_TRUE(HasValue(reference));
  EXPECT_EQ(member, "/srv/shop.mdb");
  EXPECT_TRUE(reference.IsByRef());

  // A temporary holding a field takes the trimmed text; the field keeps its own.
  auto field = std::make_shared<FieldLike>(Variant(" Ann "));
  Variant temporary(field);
  EXPECT_TRUE(HasValue(temporary));
  EXPECT_EQ(temporary.AsString(), "Ann");
  EXPECT_EQ(field->DefaultValue().AsString(), " Ann ");
}

TEST(HasValueTest, TrimRemovesBlanksOnly) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(Trim("\t a \t"), "\t a \t");
  EXPECT_EQ(Trim("    "), "");
  EXPECT_EQ(Trim(""), "");
}

}  // namespace
}  // namespace brindlewayProj
