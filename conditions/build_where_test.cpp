// BuildWhere: conditions by the value's kind, the chaining flag, the write-backs into the
// caller's variables, and its own failure path.
#include <gtest/gtest.h>

#include <brindleway/hooks.h>
#include "component/brindleway_test_access.h"
#include "tests/support/test_support.h"

namespace brindlewayProj {
namespace {

class BuildWhereTest : public ::testing::Test {
 protected:
  BuildWhereTest() : object_(std::make_unique<brindleway>()) {}
  String BuildWhere(String field, Variant& value, bool& connect, Variant& connector,
                    Variant& compOp) {
    return BrindlewayTestAccess::BuildWhere(*object_, field, value, connect, connector, compOp);
  }

  testing::ComponentFolder dir_;
  std::unique_ptr<brindleway> object_;
};

// The connector and operator come back finished, also when nothing is written; a text value
// comes back trimmed; the flag is set once a condition was written.
TEST_F(BuildWhereTest, WritesOneConditionByTheKindOfTheValue) {
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
TEST_F(BuildWhereTest, AFailureAnswersTheMessageInPlaceOfACondition) {
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

}  // namespace
}  // namespace brindlewayProj
