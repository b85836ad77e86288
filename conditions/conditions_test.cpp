// BuildWhere and BuildMultiCond: the condition texts by the value's kind, the write-backs into
// the caller's variables, and the failures (BuildWhere answers its message in place of a
// condition; BuildMultiCond leaves the call on no collection, the 16-bit count and index, a
// value without a text form).
#include <gtest/gtest.h>

#include <vector>

#include "component/brindleway_test_access.h"
#include "tests/support/test_support.h"

namespace brindlewayProj {
namespace {

// An object without a store: neither method needs a connection.
class ConditionsTest : public ::testing::Test {
 protected:
  ConditionsTest() : object_(std::make_unique<brindleway>()) {}
  String BuildWhere(String field, Variant& value, bool& connect, Variant& connector,
                    Variant& compOp) {
    return BrindlewayTestAccess::BuildWhere(*object_, field, value, connect, connector, compOp);
  }
  static brindleway::CollectionRef Values(const std::vector<Variant>& values) {
    auto collection = std::make_shared<Collection>();
    for (const Variant& value : values) collection->Add(value);
    return collection;
  }
  // The error number of a BuildMultiCond that fails, or 0.
  Long ErrorOf(String field, brindleway::CollectionRef values) {
    return testing::ErrorOf([&] { object_->BuildMultiCond(field, values); }).first;
  }

  testing::ComponentFolder dir_;
  std::unique_ptr<brindleway> object_;
};

// The connector and operator come back finished, also when nothing is written; a text value
// comes back trimmed; the flag is set once a condition was written.
TEST_F(ConditionsTest, BuildWhereWritesOneConditionByTheKindOfTheValue) {
  // Field, value, flag before, connector and operator (nullptr: left out), condition, flag.
  const std::tuple<String, Variant, bool, const char*, const char*, String, bool> cases[] = {
      {"[Description]", "Delivery", false, nullptr, nullptr, "([Description]=\"Delivery\")", true},
      {"[Quantity]", Integer{5}, true, " OR", ">", " OR ([Quantity]>5)", true},
      {"[Delivery]", false, false, nullptr, nullptr, "([Delivery]=False)", true},
      {"[ProductName]", " A ", false, nullptr, "Like", "([ProductName]Like\"A\")", true},
      {"[Name]", "say \"hi\"", false, nullptr, nullptr, "([Name]=\"say \"hi\"\")", true},
      {"[Quantity]", Long{5}, true, "", "", "  ([Quantity]5)", true},
      {"[Note]", "  null  ", false, nullptr, nullptr, "[Note]=NULL", true},
      {"[Note]", "   ", false, nullptr, nullptr, "", false},
      {"[Note]", Variant::Null(), false, nullptr, nullptr, "", false},
      {"[OrderDate]", Date{0}, false, nullptr, nullptr, "", false},
      {"[OrderDate]", TimeSerial(0, 0, 1), false, nullptr, nullptr, "", false},
      {"[OrderDate]", TimeSerial(0, 0, 2), false, nullptr, nullptr, "([OrderDate]=#12:00:02 AM#)",
       true},
      {"[OrderDate]", DateSerial(2024, 1, 2), false, nullptr, nullptr, "([OrderDate]=#1/2/24#)",
       true},
  };
  for (const auto& [field, given, before, connectorText, compOpText, expected, after] : cases) {
    Variant value = given;
    bool connect = before;
    Variant connector = connectorText ? Variant(connectorText) : Variant::Missing();
    Variant compOp = compOpText ? Variant(compOpText) : Variant::Missing();
    EXPECT_EQ(BuildWhere(field, value, connect, connector, compOp), expected);
    EXPECT_EQ(connect, after) << expected;
    EXPECT_TRUE(VarType(given) != vbString || value.AsString() == Trim(given.AsString()));
    EXPECT_EQ(connector.AsString(), connectorText ? " " + Trim(connectorText) + " " : " AND ");
    EXPECT_EQ(compOp.AsString(), compOpText ? Trim(compOpText) : "=");
  }
}

// The failure path answers the message in place of a condition and writes nothing back.
TEST_F(ConditionsTest, BuildWhereAFailureAnswersTheMessageInPlaceOfACondition) {
  for (const bool before : {false, true}) {
    bool connect = before;
    Variant value = std::make_shared<Collection>();
    Variant connector = " or ", compOp = Variant::Missing();
    const String result = BuildWhere("[Note]", value, connect, connector, compOp);
    EXPECT_TRUE(result.starts_with("<CompError: brindleway.BuildWhere> ")) << result;
    EXPECT_GT(result.size(), String("<CompError: brindleway.BuildWhere> ").size());
    EXPECT_EQ(connect, before);
    EXPECT_EQ(connector.AsString(), " or ");
  }
}

// "=" alone (however padded) joins with OR, any other operator with AND; the field comes back
// trimmed; a blank field gives nothing without touching the collection.
TEST_F(ConditionsTest, BuildMultiCondJoinsOneComparisonPerValue) {
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

TEST_F(ConditionsTest, BuildMultiCondFailuresLeaveTheCall) {
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
