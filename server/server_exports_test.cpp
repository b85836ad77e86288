// The server file as clients load it: its entry points (class factory by class id, unloading
// by live objects; registration is CreateObject's test), its exports and its folder as App.Path.
#include "server/server_exports.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <regex>

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
  ASSERT_NE(factory, nullptr);
  ClassFactory* again = nullptr;
  EXPECT_EQ(DllGetClassObject(String(Library().classGuid).c_str(), &again), kOk);
  EXPECT_EQ(again, factory);
}

TEST(ServerExportsTest, CanUnloadOnlyWhenNoObjectIsAlive) {
  TempDir dir;
  testing::MakeStore(dir);
  platform::App::SetPath(dir.path().string());
  EXPECT_EQ(DllCanUnloadNow(), kOk);
  ClassFactory* factory = nullptr;
  ASSERT_EQ(DllGetClassObject(String(Library().classGuid).c_str(), &factory), kOk);
  {
    std::shared_ptr<Dispatch> first = factory->CreateInstance();
    std::shared_ptr<Dispatch> second = factory->CreateInstance();
    EXPECT_EQ(DllCanUnloadNow(), kFalse);
    first.reset();
    EXPECT_EQ(DllCanUnloadNow(), kFalse);
  }
  EXPECT_EQ(DllCanUnloadNow(), kOk);
  platform::App::SetPath("");
}

// Every symbol the file exports belongs to the public headers or is an entry point; internal
// functions and instances of standard templates stay inside.
TEST(ServerExportsTest, TheFileExportsThePublicSurfaceOnly) {
  const String command = String("nm -D --defined-only --demangle ") + BRINDLEWAY_SERVER_FILE;
  std::unique_ptr<FILE, int (*)(FILE*)> nm(popen(command.c_str(), "r"), &pclose);
  ASSERT_TRUE(nm);
  const String classes =
      "brindleway|Variant|Collection|Object|server::Dispatch|"
      "dao::(Field|Fields|Recordset|Database|Workspace|Engine)|platform::(Error|ErrObject|App)";
  const String functions =
      "VarType|IsMissing|IsNull|IsEmpty|IsObject|CStr|CLng|CInt|CDbl|CDate|CBool|JoinText|"
      "HasValue|Trim|DateSerial|TimeSerial|dao::DBEngine|"
      "platform::(Err|Raise|RuntimeErrorText|SetMessageBoxHandler|SetRegionalLocale)";
  const std::regex publicName(
      "Dll(CanUnloadNow|GetClassObject|RegisterServer|UnregisterServer|GetVersionInfo)|"
      "(typeinfo for |typeinfo name for |vtable for )brindlewayProj::(" + classes + ")|"
      // clang's function sanitizer adds the type information of function types
      "(typeinfo for |typeinfo name for )[^(]+ \\(.*\\)|"
      "brindlewayProj::((" + classes + ")::|(" + functions + ")[[(]).*");
  int exported = 0;
  char line[4096];
  while (fgets(line, sizeof line, nm.get())) {
    std::string symbol(line);
    symbol = symbol.substr(symbol.find(' ', symbol.find(' ') + 1) + 1);  // after address and kind
    symbol.pop_back();
    EXPECT_TRUE(std::regex_match(symbol, publicName)) << symbol;
    ++exported;
  }
  EXPECT_GT(exported, 100);
}

TEST(ServerExportsTest, AppPathIsTheFolderOfTheServerFile) {
  const String folder = platform::App::Path();
  EXPECT_EQ(std::filesystem::path(folder),
            std::filesystem::path(BRINDLEWAY_SERVER_FILE).parent_path());
  EXPECT_TRUE(std::filesystem::is_regular_file(folder + "/" + platform::App::EXEName() + ".so"));
  platform::App::SetPath("/srv/shop");
  EXPECT_EQ(platform::App::Path(), "/srv/shop");
  platform::App::SetPath("");
  EXPECT_EQ(platform::App::Path(), folder);
}

}  // namespace
}  // namespace brindlewayProj::server
