// Late-bound calls through the type library. Every late-bound caller (the server-file, program
// and web tests) looks methods up by name and dispatch id and names its arguments.
#include "server/invoke.h"

#include <gtest/gtest.h>

#include <brindleway/brindleway.h>
#include <brindleway/hooks.h>
#include "tests/support/test_support.h"

namespace brindlewayProj::server {
namespace {

// On an object on a fresh sample store beside the component: arguments by place and by name
// in any order and case, converted to the parameter's type and written back to a caller's
// variable or into the plain Variant; arguments that do not fit are refused before the method
// runs; a failure that leaves the method is raised after ReturnMsg was written back.
TEST(DispatchTest, ArgumentsArePlacedConvertedAndWrittenBackOrRefused) {
  using namespace platform;
  testing::ComponentFolder dir;
  testing::MakeStore(dir);
  brindleway object;
  // The number of the error that the call raises, or 0.
  const auto errorOf = [&object](const char* name, std::vector<Argument> arguments) {
    return testing::ErrorOf([&] { InvokeMethod(object, *FindMethod(name), arguments); }).first;
  };
  String message;
  Long orderId = 0;
  std::vector<Argument> arguments{{"", Variant::ByRef(message)},
                                  {"", Variant::ByRef(orderId)},
                                  {"", "1"},  // a Long parameter takes text by CLng
                                  {"ISTRDESCRIPTION", "Gift wrap"},
                                  {"iintDelivery", Integer{0}}};
  EXPECT_EQ(CInt(InvokeMethod(object, *FindMethod("startneworder"), arguments)), 0);
  EXPECT_EQ(message, "<CompInfo: brindleway.StartNewOrder> Success");
  EXPECT_GT(orderId, 0);
  EXPECT_EQ(VarType(arguments[2].value), vbLong);  // a plain Variant takes the bound value

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
  for (const auto& [name, arguments, number] : cases) EXPECT_EQ(errorOf(name, arguments), number);

  object.DbDisconnect(message);
  EXPECT_EQ(errorOf("ProductToBuy", {{"ReturnMsg", Variant::ByRef(message)},
                                     {"ilngOrderId", 1},
                                     {"ilngProductId", 1},
                                     {"ilngQuantity", 1}}),
            errObjectNotSet);
  EXPECT_TRUE(message.starts_with("<CompError: brindleway.ProductToBuy> ")) << message;
}

}  // namespace
}  // namespace brindlewayProj::server
