// CreateObject as a client that knows only names uses it: registration into the registry
// file, the server file's entry points and late-bound calls.
#include <brindleway/dispatch.h>

#include <gtest/gtest.h>

#include <cstdlib>

#include <brindleway/brindleway.h>
#include "server/registration.h"
#include "server/server_exports.h"
#include "server/type_library.h"
#include "tests/support/test_support.h"

namespace brindlewayProj::client {
namespace {

class CreateObjectTest : public ::testing::Test {
 protected:
  CreateObjectTest() {
    testing::MakeStore(dir_);
    setenv("BRINDLEWAY_REGISTRY", (dir_ / "registry").c_str(), 1);
  }
  ~CreateObjectTest() override { unsetenv("BRINDLEWAY_REGISTRY"); }

  static Long ErrorNumberOf(const String& progId) {
    try {
      CreateObject(progId);
    } catch (const platform::Error& failure) {
      return failure.Number();
    }
    return 0;
  }

  testing::ComponentFolder dir_;
};

// Registration enters this server file with its absolute path; a created object answers
// late-bound calls by name or dispatch id.
TEST_F(CreateObjectTest, ObjectsAreCreatedOnlyWhileTheServerIsRegistered) {
  EXPECT_EQ(ErrorNumberOf("brindlewayProj.brindleway"), errCannotCreateObject);
  ASSERT_EQ(DllRegisterServer(), server::kOk);
  auto found = server::FindServer(server::Registry::Load(dir_ / "registry"), server::ProgId());
  ASSERT_TRUE(found);
  EXPECT_EQ(found->library.filename(), "brindlewayProj.so");
  EXPECT_TRUE(found->library.is_absolute() && std::filesystem::exists(found->library));
  EXPECT_EQ(ErrorNumberOf("Other.Thing"), errCannotCreateObject);

  auto object = CreateObject("BrindlewayProj.Brindleway");
  std::vector<server::Argument> order{{"", String()}, {"", Long{1}}};
  EXPECT_EQ(CInt(object->Invoke(object->GetIdOfName("DELETEANORDER"), order)), 1);
  EXPECT_EQ(CStr(order[0].value), "<CompInfo: brindleway.DeleteAnOrder> 1 records deleted");
  try {
    object->Invoke("ClearCollection", order);
    ADD_FAILURE() << "a private method was called";
  } catch (const platform::Error& failure) {
    EXPECT_EQ(failure.Number(), platform::errObjectDoesNotSupport);
  }

  ASSERT_EQ(DllUnregisterServer(), server::kOk);
  EXPECT_EQ(ErrorNumberOf("brindlewayProj.brindleway"), errCannotCreateObject);
  setenv("BRINDLEWAY_REGISTRY", (dir_ / "registry" / "below-a-file").c_str(), 1);
  EXPECT_EQ(DllRegisterServer(), server::kRegistrationFailed);
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

}  // namespace
}  // namespace brindlewayProj::client
