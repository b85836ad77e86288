// Collection: numbering from 1, a copy of each item, removal moving the rest up, indexes out
// of range.
#include <brindleway/collection.h>

#include <gtest/gtest.h>

namespace brindlewayProj {
namespace {

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

}  // namespace
}  // namespace brindlewayProj
