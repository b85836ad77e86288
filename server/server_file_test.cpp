// The server file as a client that knows only names uses it: the registry file, CreateObject
// and the entry points it goes through, the object it makes, the file's exports and its folder
// as App.Path. The program test registers, unregisters and calls through the same file.
#include <brindleway/dispatch.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <regex>

#include <brindleway/brindleway.h>
#include <brindleway/hooks.h>
#include "server/class_factory.h"
#include "server/registration.h"
#include "server/server_exports.h"
#include "server/type_library.h"
#include "tests/support/test_support.h"

namespace brindlewayProj::server {
namespace {

using testing::ErrorOf;

// The registry file is named by BRINDLEWAY_REGISTRY, else found under XDG_CONFIG_HOME, else
// under HOME. Registration is found in any case and taken out again whole: the file is then as
// it was, with the keys of another server whose name only begins like this one's.
TEST(RegistryTest, WhereTheFileLiesAndWhatItKeeps) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"/tmp/r/registry", "/cfg", "/tmp/r/registry"},
      {nullptr, "/cfg", "/cfg/brindleway/registry"},
      {"", "", "/home/someone/.config/brindleway/registry"},
  };
  const String home = std::getenv("HOME") ? std::getenv("HOME") : "";
  setenv("HOME", "/home/someone", 1);
  for (const auto& [registry, configHome, expected] : cases) {
    registry ? setenv("BRINDLEWAY_REGISTRY", registry, 1) : unsetenv("BRINDLEWAY_REGISTRY");
    setenv("XDG_CONFIG_HOME", configHome, 1);
    EXPECT_EQ(RegistryFile(), expected);
  }
  unsetenv("BRINDLEWAY_REGISTRY");
  unsetenv("XDG_CONFIG_HOME");
  setenv("HOME", home.c_str(), 1);

  testing::TempDir dir;
  const auto file = dir / "config" / "registry";
  Registry registry = Registry::Load(file);  // no file yet: empty
  registry.Set(ProgId() + "Admin\\CLSID", "{0}");
  registry.Set("CLSID\\{0}\\InprocServer32", "/lib/admin.so?a=b");
  registry.Save();
  const String before = testing::ReadFile(file);
  RegisterServer(registry, "/opt/brindleway/brindlewayProj.so");
  registry.Save();
  EXPECT_EQ(FindServer(Registry::Load(file), "BRINDLEWAYPROJ.brindleway")->library,
            "/opt/brindleway/brindlewayProj.so");
  UnregisterServer(registry);
  registry.Save();
  EXPECT_EQ(testing::ReadFile(file), before);
  EXPECT_EQ(FindServer(Registry::Load(file), ProgId() + "admin")->library, "/lib/admin.so?a=b");

  EXPECT_THROW(registry.Set("a=b", "c"), platform::Error);
  EXPECT_THROW(registry.Set("a", "two\nlines"), platform::Error);
  std::ofstream(file) << "no separator here\n";
  EXPECT_EQ(ErrorOf([&] { Registry::Load(file); }).first, platform::errPathFileAccess);
}

// Registration makes the class known: CreateObject then asks the file's factory (by the class
// id in any case, and for no other) for objects that answer late-bound calls by name or
// dispatch id, but not their private methods; the file may be unloaded only while none is
// alive. Without registration, or with a file that cannot be loaded, no object is made.
TEST(CreateObjectTest, ObjectsAreCreatedOnlyWhileALoadableServerIsRegistered) {
  testing::ComponentFolder dir;
  testing::MakeStore(dir);
  setenv("BRINDLEWAY_REGISTRY", (dir / "registry").c_str(), 1);
  const auto create = [] { client::CreateObject("brindlewayProj.brindleway"); };
  EXPECT_EQ(ErrorOf(create).first, client::errCannotCreateObject);
  ASSERT_EQ(DllRegisterServer(), kOk);
  ClassFactory* factory = nullptr;
  EXPECT_EQ(DllGetClassObject("{00000000-0000-0000-0000-000000000000}", &factory),
            kClassNotAvailable);
  EXPECT_EQ(factory, nullptr);
  EXPECT_EQ(DllGetClassObject(nullptr, &factory), kPointerError);
  String lower(Library().classGuid);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  EXPECT_EQ(DllGetClassObject(lower.c_str(), &factory), kOk);

  EXPECT_EQ(DllCanUnloadNow(), kOk);
  auto object = client::CreateObject("BrindlewayProj.Brindleway");
  client::CreateObject("brindlewayproj.brindleway").reset();
  EXPECT_EQ(DllCanUnloadNow(), kFalse);
  std::vector<Argument> order{{"", String()}, {"", Long{1}}};
  EXPECT_EQ(CInt(object->Invoke(object->GetIdOfName("DELETEANORDER"), order)), 1);
  EXPECT_EQ(CStr(order[0].value), "<CompInfo: brindleway.DeleteAnOrder> 1 records deleted");
  EXPECT_EQ(ErrorOf([&] { object->Invoke("ClearCollection", order); }).first,
            platform::errObjectDoesNotSupport);
  object.reset();
  EXPECT_EQ(DllCanUnloadNow(), kOk);

  Registry onDisk = Registry::Load(dir / "registry");
  RegisterServer(onDisk, dir / "missing" / "brindlewayProj.so");
  onDisk.Save();
  const auto [number, description] = ErrorOf(create);
  EXPECT_EQ(number, client::errCannotCreateObject);
  EXPECT_NE(description.find("missing"), String::npos) << description;

  setenv("BRINDLEWAY_REGISTRY", (dir / "registry" / "below-a-file").c_str(), 1);
  EXPECT_EQ(DllRegisterServer(), kRegistrationFailed);
  unsetenv("BRINDLEWAY_REGISTRY");
}

// Every entry point is exported, and every other symbol the file exports belongs to the public
// headers; internal functions and instances of standard templates stay inside.
TEST(ServerFileTest, ExportsItsEntryPointsAndThePublicSurfaceOnly) {
  const String command = String("nm -D --defined-only --demangle ") + BRINDLEWAY_SERVER_FILE;
  std::unique_ptr<FILE, int (*)(FILE*)> nm(popen(command.c_str(), "r"), &pclose);
  const std::regex entryPoint(
      "Dll(CanUnloadNow|GetClassObject|RegisterServer|UnregisterServer|GetVersionInfo)");
  const String classes =
      "brindleway|Variant|Collection|Object|server::Dispatch|"
      "dao::(Field|Fields|Recordset|Database|Workspace|Engine)|platform::(Error|ErrObject|App)";
  const String functions =
      "VarType|IsMissing|IsNull|IsEmpty|IsObject|CStr|CLng|CInt|CDbl|CDate|CBool|JoinText|"
      "HasValue|Trim|DateSerial|TimeSerial|dao::DBEngine|"
      "platform::(Err|Raise|RuntimeErrorText|SetMessageBoxHandler|SetRegionalLocale)";
  // clang's function sanitizer adds the type information of function types.
  const std::regex publicName("(typeinfo for |typeinfo name for |vtable for )brindlewayProj::(" +
                              classes + ")|(typeinfo for |typeinfo name for )[^(]+ \\(.*\\)|" +
                              "brindlewayProj::((" + classes + ")::|(" + functions + ")[[(]).*");
  int entryPoints = 0;
  char line[4096];
  while (fgets(line, sizeof line, nm.get())) {
    std::string symbol(line);
    symbol = symbol.substr(symbol.find(' ', symbol.find(' ') + 1) + 1);  // after address and kind
    symbol.pop_back();
    const bool isEntryPoint = std::regex_match(symbol, entryPoint);
    EXPECT_TRUE(isEntryPoint || std::regex_match(symbol, publicName)) << symbol;
    entryPoints += isEntryPoint;
  }
  EXPECT_EQ(entryPoints, 5);
}

// App.Path is the folder of brindlewayProj.so, the link to the versioned file that the version
// block names, unless a client sets it.
TEST(ServerFileTest, AppPathIsItsFolder) {
  const String folder = platform::App::Path();
  EXPECT_EQ(std::filesystem::path(folder),
            std::filesystem::path(BRINDLEWAY_SERVER_FILE).parent_path());
  EXPECT_EQ(String(DllGetVersionInfo()->fileName), platform::App::EXEName() + ".so");
  EXPECT_EQ(std::filesystem::canonical(folder + "/brindlewayProj.so").filename(),
            "brindlewayProj.so.1.0.0.0");
  platform::App::SetPath("/srv/shop");
  platform::App::SetPath("");
  EXPECT_EQ(platform::App::Path(), folder);
}

}  // namespace
}  // namespace brindlewayProj::server
