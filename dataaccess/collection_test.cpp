// Collection: numbering from 1, removal moving the rest up, indexes out of range.
#include <brindleway/collection.h>

#include <gtest/gtest.h>

namespace brindlewayProj {
namespace {

TEST(CollectionTest, AddItemRemove) {
  Collection list;
  String name = "Teapot";
  list.Add(Variant::ByRef(name));
  list.Add(Long{7});
  name = "changed later";
  EXPECT_EQ(list.Item(1).AsString(), "Teapot");
  list.Remove(1);
  ASSERT_EQ(list.Count(), 1);
  EXPECT_EQ(list.Item(1).AsLong(), 7);
  for (Long index : {0, 2, -1, std::numeric_limits<Long>::min()}) {
    try {
      list.Remove(index);
      ADD_FAILURE() << index;
    } catch (const platform::Error& failure) {
      EXPECT_EQ(failure.Number(), platform::errSubscriptOutOfRange);
    }
    EXPECT_THROW(list.Item(index), platform::Error);
  }
  EXPECT_EQ(list.Count(), 1);
}

TEST(CollectionTest, EmptiesFromTheFrontInOrder) {
  Collection list;
  for (Long i = 1; i <= 32767; ++i) list.Add(i);
  for (Long expected = 1; list.Count() > 0; ++expected) {
    ASSERT_EQ(list.Item(1).AsLong(), expected);
    list.Remove(1);
  }
}

}  // namespace
}  // namespace brindlewayProj
