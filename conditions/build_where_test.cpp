// BuildWhere: conditions by the value's kind, the chaining flag, the write-backs into the
// caller's variables, and its own failure path.
#include <gtest/gtest.h>

#include <optional>

#include "component/brindleway_test_access.h"
#include <brindleway/hooks.h>
#include "platform/regional.h"
#include "tests/support/test_support.h"

namespace brindlewayProj {
namespace {

class BuildWhereTest : public ::testing::Test {
 protected:
  BuildWhereTest() {
    platform::App::SetPath(dir_.path().string());
    platform::SetRegionalLocale("en_US");
    object_ = std::make_unique<brindleway>();
  }
  ~BuildWhereTest() override {
    platform::App::SetPath("");
    platform::SetRegionalLocale("");
  }
  String BuildWhere(String field, Variant& value, bool& connect, Variant& connector,
                    Variant& compOp) {
    return BrindlewayTestAccess::BuildWhere(*object_, field, value, connect, connector, compOp);
  }

  testing::TempDir dir_;
  testing::MessageBoxRecorder boxes_;
  std::unique_ptr<brindleway> object_;
};

struct WhereCase {
  String field;
  Variant value;
  bool connect;
  std::optional<String> connector;  // empty: left out
  std::optional<String> compOp;     // empty: left out
  String expected;
  bool connectAfter;
};

TEST_F(BuildWhereTest, WritesOneConditionByTheKindOfTheValue) {
  const std::vector<WhereCase> cases = {
      {"[Description]", "Delivery", false, {}, {}, "([Description]=\"Delivery\")", true},
      {"[Quantity]", Integer{5}, true, " OR", ">", " OR ([Quantity]>5)", true},
      {"[Quantity]", Long{0}, false, {}, {}, "([Quantity]=0)", true},
      {"[Price]", 2.5, false, {}, " <= ", "([Price]<=2.5)", true},
      {"[Delivery]", false, false, {}, {}, "([Delivery]=False)", true},
      {"[ProductName]", " A ", false, {}, "Like", "([ProductName]Like\"A\")", true},
      {"[Name]", "say \"hi\"", false, {}, {}, "([Name]=\"say \"hi\"\")", true},
      {"[Quantity]", Long{5}, false, "OR", {}, "([Quantity]=5)", true},
      {"[Quantity]", Long{5}, true, "", "", "  ([Quantity]5)", true},
      {"[Note]", "  null  ", false, {}, {}, "[Note]=NULL", true},
      {"[Note]", "Null", true, "or", ">", " or [Note]=NULL", true},
      {"[Note]", "   ", false, {}, {}, "", false},
      {"[Note]", Variant(), true, {}, {}, "", true},
      {"[Note]", Variant::Null(), false, {}, {}, "", false},
      {"", "x", false, {}, {}, "", false},
      {"[OrderDate]", Date{0}, false, {}, {}, "", false},
      {"[OrderDate]", TimeSerial(0, 0, 1), false, {}, {}, "", false},
      {"[OrderDate]", TimeSerial(0, 0, 2), false, {}, {}, "([OrderDate]=#12:00:02 AM#)", true},
      {"[OrderDate]", DateSerial(2024, 1, 2), false, {}, {}, "([OrderDate]=#1/2/24#)", true},
  };
  for (const WhereCase& c : cases) {
    Variant value = c.value;
    bool connect = c.connect;
    Variant connector = c.connector ? Variant(*c.connector) : Variant::Missing();
    Variant compOp = c.compOp ? Variant(*c.compOp) : Variant::Missing();
    EXPECT_EQ(BuildWhere(c.field, value, connect, connector, compOp), c.expected) << c.expected;
    EXPECT_EQ(connect, c.connectAfter) << c.expected;
    if (VarType(c.value) == vbString) {
      EXPECT_EQ(value.AsString(), Trim(c.value.AsString()));
    }
    // The finished connector and operator are written back, also when nothing is written.
    EXPECT_EQ(connector.AsString(), c.connector ? " " + Trim(*c.connector) + " " : " AND ");
    EXPECT_EQ(compOp.AsString(), c.compOp ? Trim(*c.compOp) : "=");
  }
}

TEST_F(BuildWhereTest, ChainsThroughTheFlagAndTrimsTheCallersText) {
  bool connect = false;
  String description = "  Delivery ";
  Variant value = Variant::ByRef(description);
  Variant connector = Variant::Missing(), compOp = Variant::Missing();
  String where = BuildWhere("[Description]", value, connect, connector, compOp);
  EXPECT_EQ(description, "Delivery");

  Variant quantity = Long{5}, orConnector = "OR", greater = ">";
  where += BuildWhere("[Quantity]", quantity, connect, orConnector, greater);
  EXPECT_EQ(where, "([Description]=\"Delivery\") OR ([Quantity]>5)");
}

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
