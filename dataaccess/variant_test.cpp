// Variant kinds, and references that read and write a caller's variable.
#include <brindleway/variant.h>

#include <gtest/gtest.h>

#include <brindleway/collection.h>
#include "dataaccess/field_like_test.h"

namespace brindlewayProj {
namespace {

TEST(VariantTest, KindWordsRawAndSeenThrough) {
  String text = "x";
  Date date{1};
  Integer integer = 1;
  Long number = 1;
  bool flag = true;
  // Raw word, then the word seen through references and default values.
  const std::tuple<Variant, Integer, Integer> cases[] = {
      {Variant::Null(), vbNull, vbNull},
      {Variant::Missing(), vbError, vbError},
      {nullptr, vbObject, vbObject},
      {testing::FieldHolding(0.5), vbObject, vbDouble},
      {Variant::ByRef(text), 16392, vbString},
      {Variant::ByRef(date), 16391, vbDate},
      {Variant::ByRef(integer), 16386, vbInteger},
      {Variant::ByRef(number), 16387, vbLong},
      {Variant::ByRef(flag), 16395, vbBoolean}};
  for (const auto& [value, raw, seen] : cases) {
    EXPECT_EQ(value.vt(), raw);
    EXPECT_EQ(VarType(value), seen) << raw;
  }
  EXPECT_TRUE(IsNull(testing::FieldHolding(Variant::Null())));
  EXPECT_TRUE(IsObject(testing::FieldHolding(Variant::Null())));
}

// A reference reads and writes the caller's variable, also through a copy, converting to the
// variable's type; a failing conversion leaves the variable alone. Value() reads it out.
TEST(VariantTest, ReferenceReadsAndWritesTheCallersVariable) {
  String text = "before";
  Date date;
  Integer integer = 0;
  Long number = 0;
  bool flag = false;
  const Variant reference = Variant::ByRef(text);
  Variant copy = reference;
  text = "changed";
  EXPECT_EQ(reference.AsString(), "changed");
  const Variant readOut = reference.Value();
  copy.Assign(Long{42});
  EXPECT_EQ(text + "|" + readOut.AsString(), "42|changed");
  Variant::ByRef(date).Assign("3/14/1999");
  Variant::ByRef(integer).Assign(2.5);
  Variant::ByRef(number).Assign(" 7 ");
  Variant::ByRef(flag).Assign(Integer{3});
  EXPECT_EQ(date.serial, 36233);
  EXPECT_EQ(integer, 2);
  EXPECT_EQ(number, 7);
  EXPECT_TRUE(flag);
  EXPECT_THROW(Variant::ByRef(integer).Assign(Long{40000}), platform::Error);
  EXPECT_EQ(integer, 2);

  Variant plain(Long{1});  // a plain Variant takes the value and its kind
  plain.Assign(Variant::ByRef(text));
  EXPECT_EQ(plain.vt(), vbString);
}

}  // namespace
}  // namespace brindlewayProj
