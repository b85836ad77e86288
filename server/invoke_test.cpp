// Late-bound calls through the type library: lookups, argument placement, binding and
// write-back, refused calls, and a sale on a real store.
#include "server/invoke.h"

#include <gtest/gtest.h>

#include <brindleway/brindleway.h>
#include <brindleway/hooks.h>
#include "tests/support/test_support.h"

namespace brindlewayProj::server {
namespace {

TEST(TypeLibraryTest, LooksUpMethodsAndParametersWithoutRegardToCase) {
  for (const MethodInfo& method : Methods()) {
    String upper(method.name);
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    EXPECT_EQ(FindMethod(upper), &method);
    EXPECT_EQ(FindMethod(method.dispId), &method);
  }
  EXPECT_EQ(FindMethod("ClearCollection"), nullptr);  // private methods are not reachable
  EXPECT_EQ(FindMethod(Long{0x60030008}), nullptr);
  EXPECT_EQ(FindParam(*FindMethod("OrderDetail"), "orderid"), 8);
  EXPECT_EQ(FindParam(*FindMethod("OrderDetail"), "Order"), -1);
}

// An object on a fresh sample store beside the component (App.Path points at the folder).
class DispatchTest : public ::testing::Test {
 protected:
  DispatchTest() : store_(testing::MakeStore(dir_)), object_(std::make_unique<brindleway>()) {}

  Variant Call(const String& name, std::vector<Argument>&& arguments) {
    return InvokeMethod(*object_, *FindMethod(name), arguments);
  }
  Variant Call(const String& name, std::vector<Argument>& arguments) {
    return InvokeMethod(*object_, *FindMethod(name), arguments);
  }
  // The number of the error that the call raises, or 0.
  Long ErrorOf(const String& name, std::vector<Argument> arguments) {
    try {
      Call(name, arguments);
    } catch (const platform::Error& failure) {
      return failure.Number();
    }
    return 0;
  }

  testing::ComponentFolder dir_;
  std::filesystem::path store_;
  std::unique_ptr<brindleway> object_;
};

// A sale called late-bound: arguments by place and by name in any order and case, converted
// to the parameter's type, written back to a caller's variable or into the plain Variant.
TEST_F(DispatchTest, NamedAndPositionalArgumentsReachTheMethodAndAreWrittenBack) {
  String message;
  Long orderId = 0;
  std::vector<Argument> arguments{{"", Variant::ByRef(message)},
                                  {"", Variant::ByRef(orderId)},
                                  {"", "1"},  // a Long parameter takes text by CLng
                                  {"ISTRDESCRIPTION", " Gift wrap "},
                                  {"iintDelivery", Integer{0}}};
  EXPECT_EQ(CInt(Call("startneworder", arguments)), 0);
  EXPECT_EQ(message, "<CompInfo: brindleway.StartNewOrder> Success");
  EXPECT_GT(orderId, 0);
  EXPECT_EQ(VarType(arguments[2].value), vbLong);  // a plain Variant takes the bound value
  EXPECT_EQ(CStr(arguments[3].value), "Gift wrap");

  EXPECT_EQ(CInt(Call("ProductToBuy", {{"", String()}, {"", orderId}, {"", "2"}, {"", 3.0}})), 0);
  std::vector<Argument> basket{{"OrderId", orderId},
                               {"ReturnMsg", String()},
                               {"ostrProductNameCol", std::make_shared<Collection>()}};
  EXPECT_EQ(CInt(Call("BasketList", basket)), 1);
  EXPECT_EQ(CStr(basket[1].value), "<CompInfo: brindleway.BasketList> Found 1 records");
  EXPECT_EQ(CStr(basket[2].value.ObjectAs<Collection>()->Item(1)), "Basalt Mortar");
}

// Arguments that do not fit are refused before the method runs; a failure that leaves the
// method is raised after ReturnMsg was written back.
TEST_F(DispatchTest, CallsThatDoNotFitAreRefusedWithThePlatformsErrors) {
  using namespace platform;
  const Variant list = std::make_shared<Collection>();
  const std::tuple<const char*, std::vector<Argument>, Long> cases[] = {
      {"DbDisconnect", {{"", ""}, {"", ""}}, errWrongArgumentCount},
      {"DbDisconnect", {{"Message", ""}}, errNamedArgumentNotFound},
      {"DeleteAnOrder", {{"ReturnMsg", ""}}, errArgumentNotOptional},
      {"DeleteAnOrder", {{"", ""}, {"", Variant::Missing()}}, errArgumentNotOptional},
      {"DeleteAnOrder", {{"", ""}, {"returnmsg", ""}}, errInvalidProcedureCall},
      {"DeleteAnOrder", {{"OrderId", Long{1}}, {"", ""}}, errInvalidProcedureCall},
      {"DeleteAnOrder", {{"", ""}, {"", "first"}}, errTypeMismatch},
      {"DeleteAnOrder", {{"", ""}, {"", Variant::Null()}}, errInvalidUseOfNull},
      {"BuyAnOrder", {{"", ""}, {"", 1}, {"", "2026-11-22"}, {"", Long{40000}}}, errOverflow},
      {"BasketList", {{"", ""}, {"", "not a collection"}, {"", 1}}, errTypeMismatch},
      {"BasketTable", {{"", ""}, {"", list}, {"", 1}}, errTypeMismatch},
  };
  for (const auto& [name, arguments, number] : cases) EXPECT_EQ(ErrorOf(name, arguments), number);

  String message;
  object_->DbDisconnect(message);
  EXPECT_EQ(ErrorOf("ProductToBuy", {{"ReturnMsg", Variant::ByRef(message)},
                                     {"ilngOrderId", 1},
                                     {"ilngProductId", 1},
                                     {"ilngQuantity", 1}}),
            errObjectNotSet);
  EXPECT_TRUE(message.starts_with("<CompError: brindleway.ProductToBuy> ")) << message;
}

}  // namespace
}  // namespace brindlewayProj::server
