// Late-bound calls through the type library: lookups, argument placement, binding and
// write-back, refused calls, and results equal to direct calls on a real store.
#include "server/invoke.h"

#include <gtest/gtest.h>

#include <brindleway/brindleway.h>
#include <brindleway/hooks.h>
#include "tests/support/test_support.h"

namespace brindlewayProj::server {
namespace {

using testing::TempDir;

TEST(TypeLibraryTest, MethodsCarryTheirPlaceAsDispatchIdInTableOrder) {
  ASSERT_EQ(Methods().size(), 18u);
  EXPECT_EQ(Methods().front().name, "DbConnect");
  EXPECT_EQ(Methods().front().dispId, 0x60030002);
  EXPECT_EQ(Methods().back().name, "StartNewOrder");
  EXPECT_EQ(Methods().back().dispId, 0x60030018);
  for (std::size_t i = 1; i < Methods().size(); ++i) {
    EXPECT_EQ(Methods()[i].dispId >> 16, 0x6003);
    EXPECT_LT(Methods()[i - 1].dispId, Methods()[i].dispId) << Methods()[i].name;
  }
}

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

TEST(TypeLibraryTest, SignatureShowsOptionalsAndDefaults) {
  EXPECT_EQ(Signature(*FindMethod("BuildMultiCond")),
            "BuildMultiCond(sField As String, colCond As Collection, "
            "[sCompOp As String = \" = \"], [bQuote As Boolean = False]) As String");
  EXPECT_EQ(Signature(*FindMethod("DbDisconnect")), "DbDisconnect(ReturnMsg As String) As Integer");
}

// An object on a fresh sample store beside the component (App.Path points at the folder).
class DispatchTest : public ::testing::Test {
 protected:
  DispatchTest() {
    testing::MakeStore(dir_);
    platform::App::SetPath(dir_.path().string());
    object_ = std::make_unique<brindleway>();
  }
  ~DispatchTest() override { platform::App::SetPath(""); }

  Variant Call(const String& name, std::vector<Argument>&& arguments) {
    return InvokeMethod(*object_, *FindMethod(name), arguments);
  }
  Variant Call(const String& name, std::vector<Argument>& arguments) {
    return InvokeMethod(*object_, *FindMethod(name), arguments);
  }

  TempDir dir_;
  std::unique_ptr<brindleway> object_;
};

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

  std::vector<Argument> basket{{"OrderId", orderId},
                               {"ReturnMsg", String()},
                               {"ostrProductNameCol", std::make_shared<Collection>()}};
  EXPECT_EQ(CInt(Call("BasketList", basket)), 0);
  EXPECT_EQ(CStr(basket[1].value), "<CompWarning: brindleway.BasketList> Did not find any records");
}

TEST_F(DispatchTest, LateBoundResultsEqualDirectCalls) {
  String directMessage;
  Long directOrder = 0, customer = 1;
  Variant none = Variant::Missing(), delivery(Integer{0});
  ASSERT_EQ(object_->StartNewOrder(directMessage, directOrder, customer, none, none, delivery), 0)
      << directMessage;
  std::vector<Argument> start{{"ReturnMsg", String()},
                              {"olngOrderId", Long{0}},
                              {"ilngCustomerId", customer},
                              {"iintDelivery", Integer{0}}};
  EXPECT_EQ(CInt(Call("StartNewOrder", start)), 0);
  EXPECT_EQ(CStr(start[0].value), directMessage);
  EXPECT_EQ(CLng(start[1].value), directOrder + 1);

  auto direct = std::make_shared<Collection>();
  String separator = " | ";
  ASSERT_GE(object_->ListOfOrders(directMessage, direct, separator, customer), 1);
  std::vector<Argument> listing{{"ReturnMsg", String()},
                                {"ocolQueryResultCol", std::make_shared<Collection>()},
                                {"istrSeparator", " | "},
                                {"CustomerId", customer}};
  EXPECT_EQ(CInt(Call("ListOfOrders", listing)), direct->Count());
  auto late = listing[1].value.ObjectAs<Collection>();
  ASSERT_EQ(late->Count(), direct->Count());
  for (Long i = 1; i <= direct->Count(); ++i) EXPECT_EQ(CStr(late->Item(i)), CStr(direct->Item(i)));
}

TEST_F(DispatchTest, LeftOutOptionalsTakeTheirDefaults) {
  auto values = std::make_shared<Collection>();
  values->Add("1");
  values->Add("2");
  String field = "OrderId";
  EXPECT_EQ(CStr(Call("BuildMultiCond", {{"", field}, {"", values}})),
            object_->BuildMultiCond(field, values));
  String op = " = ";
  bool quote = true;
  EXPECT_EQ(CStr(Call("BuildMultiCond",
                      {{"", field}, {"", values}, {"", Variant::Missing()}, {"bQuote", true}})),
            object_->BuildMultiCond(field, values, op, quote));
}

struct RefusedCall {
  const char* name;
  std::vector<Argument> arguments;
  Long number;
};

TEST_F(DispatchTest, CallsThatDoNotFitAreRefusedWithThePlatformsErrors) {
  const std::vector<RefusedCall> cases = {
      {"DbDisconnect", {{"", String()}, {"", String()}}, errWrongArgumentCount},
      {"DbDisconnect", {{"Message", String()}}, errNamedArgumentNotFound},
      {"DeleteAnOrder", {{"ReturnMsg", String()}}, errArgumentNotOptional},
      {"DeleteAnOrder", {{"", String()}, {"", Variant::Missing()}}, errArgumentNotOptional},
      {"DeleteAnOrder",
       {{"", String()}, {"returnmsg", String()}},
       platform::errInvalidProcedureCall},
      {"DeleteAnOrder", {{"OrderId", Long{1}}, {"", String()}}, platform::errInvalidProcedureCall},
      {"DeleteAnOrder", {{"", String()}, {"", "first"}}, platform::errTypeMismatch},
      {"DeleteAnOrder", {{"", String()}, {"", Variant::Null()}}, platform::errInvalidUseOfNull},
      {"BuyAnOrder",
       {{"", String()}, {"", Long{1}}, {"", "2026-11-22"}, {"", Long{40000}}},
       platform::errOverflow},
      {"BasketList",
       {{"", String()}, {"", "not a collection"}, {"", Long{1}}},
       platform::errTypeMismatch},
      {"BasketTable",
       {{"", String()}, {"", std::make_shared<Collection>()}, {"", Long{1}}},
       platform::errTypeMismatch},
  };
  for (const RefusedCall& refused : cases) {
    std::vector<Argument> arguments = refused.arguments;
    try {
      Call(refused.name, arguments);
      ADD_FAILURE() << refused.name << " was not refused";
    } catch (const platform::Error& failure) {
      EXPECT_EQ(failure.Number(), refused.number) << refused.name << ": " << failure.Description();
    }
  }
}

TEST_F(DispatchTest, AFailureLeavingTheMethodStillWritesReturnMsgBack) {
  String message;
  Integer status = 0;
  object_->DbDisconnect(message);
  std::vector<Argument> arguments{{"ReturnMsg", Variant::ByRef(message)},
                                  {"ilngOrderId", Long{1}},
                                  {"ilngProductId", Long{1}},
                                  {"ilngQuantity", Long{1}}};
  try {
    status = CInt(Call("ProductToBuy", arguments));
    ADD_FAILURE() << "status " << status;
  } catch (const platform::Error& failure) {
    EXPECT_EQ(failure.Number(), platform::errObjectNotSet);
  }
  EXPECT_TRUE(message.starts_with("<CompError: brindleway.ProductToBuy> ")) << message;
}

}  // namespace
}  // namespace brindlewayProj::server
