// Collection: numbering from 1, removal moving the rest up, indexes out of range.
#include "dataaccess/collection.h"

#include <gtest/gtest.h>

namespace brindlewayProj {
namespace {

Long FailureNumber(const std::function<void()>& action) {
  try {
    action();
  } catch (const platform::Error& failure) {
    return failure.Number();
  }
  return 0;
}

TEST(CollectionTest, AddItemRemove) {
  Collection list;
  String name = "Teapot";
  list.Add(Variant::ByRef(name));
  list.Add(Variant(Long{7}));
  list.Add(Variant::Null());
  name = "changed later";
  ASSERT_EQ(list.Count(), 3);
  EXPECT_FALSE(list.Item(1).IsByRef());
  EXPECT_EQ(list.Item(1).AsString(), "Teapot");
  list.Remove(1);
  EXPECT_EQ(list.Count(), 2);
  EXPECT_EQ(list.Item(1).AsLong(), 7);
  EXPECT_TRUE(IsNull(list.Item(2)));
}

TEST(CollectionTest, IndexOutOfRangeIsSubscriptOutOfRange) {
  Collection list;
  list.Add(Variant("only"));
  for (Long index : {0, 2, -1, std::numeric_limits<Long>::min()}) {
    EXPECT_EQ(FailureNumber([&] { list.Item(index); }), platform::errSubscriptOutOfRange);
    EXPECT_EQ(FailureNumber([&] { list.Remove(index); }), platform::errSubscriptOutOfRange);
  }
  EXPECT_EQ(list.Count(), 1);
}

TEST(CollectionTest, EmptyingFromTheFrontStaysCheap) {
  Collection list;
  for (Long i = 1; i <= 32767; ++i) list.Add(Variant(i));
  for (Long expected = 1; list.Count() > 0; ++expected) {
    ASSERT_EQ(list.Item(1).AsLong(), expected);
    list.Remove(1);
  }
}

}  // namespace
}  // namespace brindlewayProj
