// Variant kinds, references that read and write a caller's variable, HasValue, and the
// Collection the lists are handed over in.
#include <brindleway/variant.h>

#include <gtest/gtest.h>

#include <brindleway/collection.h>
#include "dataaccess/field_like_test.h"
#include "tests/support/test_support.h"

namespace brindlewayProj {
namespace {

using testing::FieldHolding;

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
      {FieldHolding(0.5), vbObject, vbDouble},
      {Variant::ByRef(text), 16392, vbString},
      {Variant::ByRef(date), 16391, vbDate},
      {Variant::ByRef(integer), 16386, vbInteger},
      {Variant::ByRef(number), 16387, vbLong},
      {Variant::ByRef(flag), 16395, vbBoolean}};
  for (const auto& [value, raw, seen] : cases) {
    EXPECT_EQ(value.vt(), raw);
    EXPECT_EQ(VarType(value), seen) << raw;
  }
  EXPECT_TRUE(IsNull(FieldHolding(Variant::Null())));
  EXPECT_TRUE(IsObject(FieldHolding(Variant::Null())));
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

// HasValue on the kinds the component's own calls do not pass (those are checked through the
// readers and writers): tabs are no blanks, an Error and an object are values, Nothing and a
// Field without value are not; the trim reaches the caller's variable through a reference.
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

// Numbering from 1, a copy of each item, removal moving the rest up, indexes out of range.
TEST(CollectionTest, AddItemRemove) {
  Collection list;
  String name = "Teapot";
  list.Add(Variant::ByRef(name));
  list.Add(Long{7});
  list.Add(Long{8});
  name = "changed later";
  EXPECT_EQ(list.Item(1).AsString(), "Teapot");
  list.Remove(1);
  list.Remove(2);
  ASSERT_EQ(list.Count(), 1);
  EXPECT_EQ(list.Item(1).AsLong(), 7);
  for (Long index : {0, 2, std::numeric_limits<Long>::min()}) {
    EXPECT_EQ(testing::ErrorOf([&] { list.Remove(index); }).first, platform::errSubscriptOutOfRange)
        << index;
    EXPECT_THROW(list.Item(index), platform::Error);
  }
  EXPECT_EQ(list.Count(), 1);
}

}  // namespace
}  // namespace brindlewayProj
