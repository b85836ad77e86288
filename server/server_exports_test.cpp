// The server's entry points: class factory by class id and unloading by live objects (the
// registration is CreateObject's test).
#include "server/server_exports.h"

#include <gtest/gtest.h>

#include <brindleway/hooks.h>
#include "server/class_factory.h"
#include "server/type_library.h"
#include "tests/support/test_support.h"

namespace brindlewayProj::server {
namespace {

using testing::TempDir;

TEST(ServerExportsTest, HandsOutTheFactoryOfItsOwnClassOnly) {
  ClassFactory* factory = nullptr;
  EXPECT_EQ(DllGetClassObject("{00000000-0000-0000-0000-000000000000}", &factory),
            kClassNotAvailable);
  EXPECT_EQ(factory, nullptr);
  EXPECT_EQ(DllGetClassObject(nullptr, &factory), kPointerError);
  String lower(Library().classGuid);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  EXPECT_EQ(DllGetClassObject(lower.c_str(), &factory), kOk);
  EXPECT_EQ(factory, &BrindlewayClassFactory());
}

TEST(ServerExportsTest, CanUnloadOnlyWhenNoObjectIsAlive) {
  TempDir dir;
  testing::MakeStore(dir);
  platform::App::SetPath(dir.path().string());
  EXPECT_EQ(DllCanUnloadNow(), kOk);
  {
    std::shared_ptr<Dispatch> first = BrindlewayClassFactory().CreateInstance();
    std::shared_ptr<Dispatch> second = BrindlewayClassFactory().CreateInstance();
    EXPECT_EQ(ObjectsAlive(), 2);
    EXPECT_EQ(DllCanUnloadNow(), kFalse);
    first.reset();
    EXPECT_EQ(DllCanUnloadNow(), kFalse);
  }
  EXPECT_EQ(DllCanUnloadNow(), kOk);
  platform::App::SetPath("");
}

}  // namespace
}  // namespace brindlewayProj::server
