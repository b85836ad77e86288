// Variant kinds, references to a caller's variable, and assignment through them.
#include "dataaccess/variant.h"

#include <gtest/gtest.h>

#include "dataaccess/collection.h"

namespace brindlewayProj {
namespace {

// An object whose default value is another Variant, as a Field answers its Value.
class ValueHolder : public Object {
 public:
  explicit ValueHolder(Variant value) : value_(std::move(value)) {}
  bool HasDefaultValue() const override { return true; }
  Variant DefaultValue() const override { return value_; }

 private:
  Variant value_;
};

TEST(VariantTest, KindWords) {
  String text = "x";
  Date date{1};
  Integer integer = 1;
  Long number = 1;
  bool flag = true;
  struct Case {
    Variant value;
    Integer raw;
    Integer seen;
  };
  const Case cases[] = {
      {Variant(), vbEmpty, vbEmpty},
      {Variant::Null(), vbNull, vbNull},
      {Variant(Integer{0}), vbInteger, vbInteger},
      {Variant(Long{0}), vbLong, vbLong},
      {Variant(0.5), vbDouble, vbDouble},
      {Variant(Date{0}), vbDate, vbDate},
      {Variant("x"), vbString, vbString},
      {Variant(false), vbBoolean, vbBoolean},
      {Variant::Missing(), vbError, vbError},
      {Variant(nullptr), vbObject, vbObject},
      {Variant(std::make_shared<Collection>()), vbObject, vbObject},
      {Variant(std::make_shared<ValueHolder>(Variant::Null())), vbObject, vbNull},
      {Variant::ByRef(text), 16392, vbString},
      {Variant::ByRef(date), 16391, vbDate},
      {Variant::ByRef(integer), 16386, vbInteger},
      {Variant::ByRef(number), 16387, vbLong},
      {Variant::ByRef(flag), 16395, vbBoolean},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.value.vt(), c.raw) << c.raw;
    EXPECT_EQ(VarType(c.value), c.seen) << c.raw;
  }
}

TEST(VariantTest, PredicatesLookThroughReferencesAndDefaultValues) {
  String text;
  const Variant nullField(std::make_shared<ValueHolder>(Variant::Null()));
  EXPECT_TRUE(IsNull(nullField));
  EXPECT_TRUE(IsObject(nullField));
  EXPECT_FALSE(IsNull(Variant(nullptr)));
  EXPECT_TRUE(IsEmpty(Variant()));
  EXPECT_FALSE(IsEmpty(Variant::ByRef(text)));
  EXPECT_TRUE(IsMissing(Variant::Missing()));
  EXPECT_FALSE(IsMissing(Variant::Error(448)));
}

TEST(VariantTest, ReferenceReadsAndWritesTheCallersVariable) {
  String text = "before";
  Variant reference = Variant::ByRef(text);
  Variant copy = reference;  // still the same variable
  text = "changed";
  EXPECT_EQ(reference.AsString(), "changed");
  copy.Assign(Variant("after"));
  EXPECT_EQ(text, "after");
  const Variant value = reference.Value();
  text = "again";
  EXPECT_FALSE(value.IsByRef());
  EXPECT_EQ(value.AsString(), "after");
}

TEST(VariantTest, AssignThroughAReferenceConvertsToTheVariablesType) {
  String text;
  Date date;
  Integer integer = 0;
  Long number = 0;
  bool flag = false;
  Variant::ByRef(text).Assign(Variant(Long{42}));
  Variant::ByRef(date).Assign(Variant("3/14/1999"));
  Variant::ByRef(integer).Assign(Variant(2.5));
  Variant::ByRef(number).Assign(Variant(" 7 "));
  Variant::ByRef(flag).Assign(Variant(Integer{3}));
  EXPECT_EQ(text, "42");
  EXPECT_EQ(date.serial, 36233);
  EXPECT_EQ(integer, 2);
  EXPECT_EQ(number, 7);
  EXPECT_TRUE(flag);

  // A failing conversion raises and leaves the variable as it was.
  integer = 5;
  EXPECT_THROW(Variant::ByRef(integer).Assign(Variant(Long{40000})), platform::Error);
  EXPECT_EQ(integer, 5);

  // A plain Variant takes the value and its kind.
  Variant plain(Long{1});
  plain.Assign(Variant::ByRef(text));
  EXPECT_EQ(plain.vt(), vbString);
  EXPECT_EQ(plain.AsString(), "42");
}

TEST(VariantTest, TypedAccessOfAnotherKindIsATypeMismatch) {
  try {
    Variant("12").AsLong();
    FAIL();
  } catch (const platform::Error& failure) {
    EXPECT_EQ(failure.Number(), platform::errTypeMismatch);
  }
  EXPECT_THROW(Variant(Long{1}).AsObject(), platform::Error);
  EXPECT_THROW(Variant::Null().ErrorCode(), platform::Error);
}

}  // namespace
}  // namespace brindlewayProj
