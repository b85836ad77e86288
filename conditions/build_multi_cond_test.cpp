// BuildMultiCond: the condition texts, the write-back of the field, and the failures that
// leave the call (no collection, the 16-bit count and index, a value without a text form).
#include <gtest/gtest.h>

#include <vector>

#include <brindleway/brindleway.h>
#include <brindleway/hooks.h>
#include "platform/regional.h"
#include "tests/support/test_support.h"

namespace brindlewayProj {
namespace {

// An object without a store: BuildMultiCond needs no connection.
class BuildMultiCondTest : public ::testing::Test {
 protected:
  BuildMultiCondTest() {
    platform::App::SetPath(dir_.path().string());
    platform::SetRegionalLocale("en_US");
    object_ = std::make_unique<brindleway>();
  }
  ~BuildMultiCondTest() override {
    platform::App::SetPath("");
    platform::SetRegionalLocale("");
  }
  static brindleway::CollectionRef Values(const std::vector<Variant>& values) {
    auto collection = std::make_shared<Collection>();
    for (const Variant& value : values) collection->Add(value);
    return collection;
  }

  testing::TempDir dir_;
  testing::MessageBoxRecorder boxes_;
  std::unique_ptr<brindleway> object_;
};

struct MultiCase {
  String field;
  std::vector<Variant> values;
  const char* compOp;  // nullptr: left out, with its default " = "
  bool quote;
  String expected;
};

TEST_F(BuildMultiCondTest, JoinsOneComparisonPerValue) {
  const std::vector<MultiCase> cases = {
      {"[ProductId]",
       {Integer{3}, Long{7}},
       nullptr,
       false,
       "(([ProductId] = 3) OR ([ProductId] = 7))"},
      {"[Vendor]", {"A", "B"}, "<>", true, "(([Vendor]<>'A') AND ([Vendor]<>'B'))"},
      {"[ProductId]", {Long{3}}, nullptr, false, "(([ProductId] = 3))"},
      {"  [ProductId] ", {Variant::Null()}, nullptr, false, "(([ProductId] = ))"},
      {"[ProductId]",
       {Variant::Null(), Variant()},
       " = ",
       true,
       "(([ProductId] = '') OR ([ProductId] = ''))"},
      {"[ProductId]", {Long{3}}, nullptr, true, "(([ProductId] = '3'))"},
      {"[ProductId]", {Long{3}, Long{7}}, "=", false, "(([ProductId]=3) OR ([ProductId]=7))"},
      {"[ProductId]", {Long{3}, Long{7}}, "= ", false, "(([ProductId]= 3) OR ([ProductId]= 7))"},
      {"[ProductId]", {Long{3}, Long{7}}, "", false, "(([ProductId]3) AND ([ProductId]7))"},
      {"[ProductId]",
       {Long{3}, Long{7}},
       " <= ",
       false,
       "(([ProductId] <= 3) AND ([ProductId] <= 7))"},
      {"[Name]",
       {" it's ", true, DateSerial(1999, 3, 14), 2.5},
       " Like ",
       true,
       "(([Name] Like ' it's ') AND ([Name] Like 'True') AND ([Name] Like '3/14/99') AND "
       "([Name] Like '2.5'))"},
      {"[ProductId]", {}, nullptr, false, ""},
  };
  for (const MultiCase& c : cases) {
    String field = c.field;
    auto values = Values(c.values);
    String compOp = c.compOp == nullptr ? " = " : c.compOp;
    bool quote = c.quote;
    const String result = c.compOp == nullptr && !quote
                              ? object_->BuildMultiCond(field, values)
                              : object_->BuildMultiCond(field, values, compOp, quote);
    EXPECT_EQ(result, c.expected) << c.field;
    EXPECT_EQ(field, Trim(c.field));
  }
}

TEST_F(BuildMultiCondTest, BlankFieldGivesNothingWithoutTouchingTheCollection) {
  String field = "   ";
  brindleway::CollectionRef nothing;
  EXPECT_EQ(object_->BuildMultiCond(field, nothing), "");
  EXPECT_EQ(field, "");
}

TEST_F(BuildMultiCondTest, FailuresLeaveTheCall) {
  auto errorOf = [this](String field, brindleway::CollectionRef values) {
    try {
      object_->BuildMultiCond(field, values);
    } catch (const platform::Error& failure) {
      return failure.Number();
    }
    return Long{0};
  };
  EXPECT_EQ(errorOf("[ProductId]", nullptr), platform::errObjectNotSet);

  // 32768 values overflow before any is read, even a value without a text form.
  std::vector<Variant> values(32767, Variant(Long{1}));
  values.insert(values.begin(), Variant(std::make_shared<Collection>()));
  EXPECT_EQ(errorOf("[P]", Values(values)), platform::errOverflow);

  // With 32767 all are read: a bad last value fails on reading it, good ones on the index.
  values.erase(values.begin());
  EXPECT_EQ(errorOf("[P]", Values(values)), platform::errOverflow);
  values.back() = Variant(std::make_shared<Collection>());
  const Long lastValueFailure = errorOf("[P]", Values(values));
  EXPECT_NE(lastValueFailure, 0);
  EXPECT_NE(lastValueFailure, platform::errOverflow);
}

}  // namespace
}  // namespace brindlewayProj
