// CreateObject as a client that knows only names uses it: through the registry file, the
// server file's entry points and late-bound calls.
#include <brindleway/dispatch.h>

#include <gtest/gtest.h>

#include <cstdlib>

#include <brindleway/brindleway.h>
#include "server/registry.h"
#include "server/server_exports.h"
#include <brindleway/hooks.h>
#include "tests/support/test_support.h"

namespace brindlewayProj::client {
namespace {

using testing::TempDir;

class CreateObjectTest : public ::testing::Test {
 protected:
  CreateObjectTest() {
    testing::MakeStore(dir_);
    platform::App::SetPath(dir_.path().string());
    setenv("BRINDLEWAY_REGISTRY", (dir_ / "registry").c_str(), 1);
  }
  ~CreateObjectTest() override {
    unsetenv("BRINDLEWAY_REGISTRY");
    platform::App::SetPath("");
  }

  static Long ErrorNumberOf(const String& progId) {
    try {
      CreateObject(progId);
    } catch (const platform::Error& failure) {
      return failure.Number();
    }
    return 0;
  }

  TempDir dir_;
};

TEST_F(CreateObjectTest, ObjectsAreCreatedOnlyWhileTheServerIsRegistered) {
  EXPECT_EQ(ErrorNumberOf("brindlewayProj.brindleway"), errCannotCreateObject);
  ASSERT_EQ(DllRegisterServer(), server::kOk);
  EXPECT_EQ(ErrorNumberOf("Other.Thing"), errCannotCreateObject);
  EXPECT_TRUE(CreateObject("BrindlewayProj.Brindleway"));
  ASSERT_EQ(DllUnregisterServer(), server::kOk);
  EXPECT_EQ(ErrorNumberOf("brindlewayProj.brindleway"), errCannotCreateObject);
}

TEST_F(CreateObjectTest, AServerFileThatCannotBeLoadedIsReported) {
  server::Registry onDisk = server::Registry::Load(dir_ / "registry");
  server::RegisterServer(onDisk, dir_ / "missing" / "brindlewayProj.so");
  onDisk.Save();
  try {
    CreateObject("brindlewayProj.brindleway");
    FAIL();
  } catch (const platform::Error& failure) {
    EXPECT_EQ(failure.Number(), errCannotCreateObject);
    EXPECT_NE(failure.Description().find("missing"), String::npos) << failure.Description();
  }
}

// The sale as a client that knows only names calls it, against the same sale called directly
// on a second store: the same statuses, messages and basket.
TEST_F(CreateObjectTest, ALateBoundClientGetsTheResultsOfADirectCall) {
  ASSERT_EQ(DllRegisterServer(), server::kOk);
  std::shared_ptr<server::Dispatch> object = CreateObject("brindlewayProj.brindleway");

  std::vector<server::Argument> start{{"ReturnMsg", String()},
                                      {"olngOrderId", Long{0}},
                                      {"ilngCustomerId", "1"},
                                      {"iintDelivery", Integer{0}},
                                      {"istrDescription", " Gift wrap "}};
  ASSERT_EQ(CInt(object->Invoke("StartNewOrder", start)), 0);
  EXPECT_EQ(CStr(start[0].value), "<CompInfo: brindleway.StartNewOrder> Success");
  const Long lateOrder = CLng(start[1].value);

  std::vector<server::Argument> buy{{"", String()}, {"", lateOrder}, {"", Long{2}}, {"", Long{3}}};
  EXPECT_EQ(CInt(object->Invoke(object->GetIdOfName("PRODUCTTOBUY"), buy)), 0);
  std::vector<server::Argument> list{
      {"", String()}, {"", std::make_shared<Collection>()}, {"", lateOrder}};
  Integer lateCount = CInt(object->Invoke("BasketList", list));

  TempDir other;
  testing::MakeStore(other);
  platform::App::SetPath(other.path().string());
  brindleway direct;
  String message;
  Long directOrder = 0, customer = 1, product = 2, quantity = 3;
  Variant missing = Variant::Missing(), delivery(Integer{0}), description(" Gift wrap ");
  ASSERT_EQ(
      direct.StartNewOrder(message, directOrder, customer, missing, missing, delivery, description),
      0);
  EXPECT_EQ(directOrder, lateOrder);
  ASSERT_EQ(direct.ProductToBuy(message, directOrder, product, quantity), 0);
  auto names = std::make_shared<Collection>();
  EXPECT_EQ(direct.BasketList(message, names, directOrder), lateCount);
  EXPECT_EQ(CStr(list[0].value), message);
  auto lateNames = list[1].value.ObjectAs<Collection>();
  ASSERT_EQ(lateNames->Count(), names->Count());
  for (Long i = 1; i <= names->Count(); ++i)
    EXPECT_EQ(CStr(lateNames->Item(i)), CStr(names->Item(i)));
}

}  // namespace
}  // namespace brindlewayProj::client
