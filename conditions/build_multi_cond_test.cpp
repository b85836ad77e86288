// BuildMultiCond: the condition texts, the write-back of the field, and the failures that
// leave the call (no collection, the 16-bit count and index, a value without a text form).
#include <gtest/gtest.h>

#include <vector>

#include <brindleway/brindleway.h>
#include <brindleway/hooks.h>
#include "tests/support/test_support.h"

namespace brindlewayProj {
namespace {

// An object without a store: BuildMultiCond needs no connection.
class BuildMultiCondTest : public ::testing::Test {
 protected:
  BuildMultiCondTest() : object_(std::make_unique<brindleway>()) {}
  static brindleway::CollectionRef Values(const std::vector<Variant>& values) {
    auto collection = std::make_shared<Collection>();
    for (const Variant& value : values) collection->Add(value);
    return collection;
  }
  // The error number of a call that fails, or 0.
  Long ErrorOf(String field, brindleway::CollectionRef values) {
    try {
      object_->BuildMultiCond(field, values);
    } catch (const platform::Error& failure) {
      return failure.Number();
    }
    return 0;
  }

  testing::ComponentFolder dir_;
  std::unique_ptr<brindleway> object_;
};

// "=" alone (however padded) joins with OR, any other operator with AND; the field comes back
// trimmed; a blank field gives nothing without touching the collection.
TEST_F(BuildMultiCondTest, JoinsOneComparisonPerValue) {
  // Field, values, operator (nullptr: left out), quote, condition.
  const std::tuple<String, std::vector<Variant>, const char*, bool, String> cases[] = {
      {"[Id]", {Integer{3}, Long{7}}, nullptr, false, "(([Id] = 3) OR ([Id] = 7))"},
      {"[Vendor]", {"A", "B"}, "<>", true, "(([Vendor]<>'A') AND ([Vendor]<>'B'))"},
      {"  [Id] ", {Variant::Null()}, nullptr, false, "(([Id] = ))"},
      {"[Id]", {Variant::Null(), Variant()}, " = ", true, "(([Id] = '') OR ([Id] = ''))"},
      {"[Id]", {Long{3}, Long{7}}, "= ", false, "(([Id]= 3) OR ([Id]= 7))"},
      {"[Id]", {Long{3}, Long{7}}, "", false, "(([Id]3) AND ([Id]7))"},
      {"[Id]", {Long{3}, Long{7}}, " <= ", false, "(([Id] <= 3) AND ([Id] <= 7))"},
      {"[N]",
       {" it's ", true, DateSerial(1999, 3, 14), 2.5},
       " Like ",
       true,
       "(([N] Like ' it's ') AND ([N] Like 'True') AND ([N] Like '3/14/99') AND ([N] Like '2.5'))"},
      {"[Id]", {}, nullptr, false, ""},
  };
  for (const auto& [given, values, op, quote, expected] : cases) {
    String field = given, compOp = op ? op : " = ";
    auto collection = Values(values);
    bool quoted = quote;
    EXPECT_EQ(op || quote ? object_->BuildMultiCond(field, collection, compOp, quoted)
                          : object_->BuildMultiCond(field, collection),
              expected);
    EXPECT_EQ(field, Trim(given));
  }
  String blank = "   ";
  brindleway::CollectionRef nothing;
  EXPECT_EQ(object_->BuildMultiCond(blank, nothing), "");
  EXPECT_EQ(blank, "");
}

TEST_F(BuildMultiCondTest, FailuresLeaveTheCall) {
  EXPECT_EQ(ErrorOf("[ProductId]", nullptr), platform::errObjectNotSet);

  // 32768 values overflow before any is read, even a value without a text form.
  std::vector<Variant> values(32767, Variant(Long{1}));
  values.insert(values.begin(), Variant(std::make_shared<Collection>()));
  EXPECT_EQ(ErrorOf("[P]", Values(values)), platform::errOverflow);

  // With 32767 all are read: a bad last value fails on reading it, good ones on the index.
  values.erase(values.begin());
  EXPECT_EQ(ErrorOf("[P]", Values(values)), platform::errOverflow);
  values.back() = Variant(std::make_shared<Collection>());
  const Long lastValueFailure = ErrorOf("[P]", Values(values));
  EXPECT_NE(lastValueFailure, 0);
  EXPECT_NE(lastValueFailure, platform::errOverflow);
}

}  // namespace
}  // namespace brindlewayProj
