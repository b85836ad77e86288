// The registry file: where it lies, reading and writing it, and this server's entries in it.
#include "server/registration.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include <brindleway/error.h>
#include "server/type_library.h"
#include "tests/support/test_support.h"

namespace brindlewayProj::server {
namespace {

using testing::TempDir;

TEST(RegistryFileTest, OverrideThenConfigHomeThenHome) {
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
}

TEST(RegistryTest, SavesAndLoadsEntriesRemovesOnlyTheTreeAskedAndRefusesMalformedFiles) {
  TempDir dir;
  const auto file = dir / "config" / "registry";
  Registry registry = Registry::Load(file);  // no file yet: empty
  EXPECT_FALSE(registry.Get("a"));
  registry.Set("CLSID\\{1}", "one");
  registry.Set("CLSID\\{1}\\InprocServer32", "/lib/one.so");
  registry.Set("CLSID\\{10}", "ten");  // shares a prefix, but is no key below {1}
  registry.Set("Other", "value with = sign");
  registry.Save();

  Registry loaded = Registry::Load(file);
  EXPECT_EQ(loaded.Get("clsid\\{1}\\inprocserver32"), "/lib/one.so");
  EXPECT_EQ(loaded.Get("Other"), "value with = sign");
  loaded.RemoveTree("clsid\\{1}");
  EXPECT_FALSE(loaded.Get("CLSID\\{1}"));
  EXPECT_FALSE(loaded.Get("CLSID\\{1}\\InprocServer32"));
  EXPECT_EQ(loaded.Get("CLSID\\{10}"), "ten");
  EXPECT_THROW(loaded.Set("a=b", "c"), platform::Error);
  EXPECT_THROW(loaded.Set("a", "two\nlines"), platform::Error);

  std::ofstream(file) << "no separator here\n";
  try {
    Registry::Load(file);
    ADD_FAILURE() << "a malformed file was read";
  } catch (const platform::Error& failure) {
    EXPECT_EQ(failure.Number(), platform::errPathFileAccess);
  }
}

TEST(RegistryTest, RegistrationIsFoundByProgIdAndTakenOutWithoutTouchingOthers) {
  Registry registry;
  registry.Set("Other.Thing\\CLSID", "{0}");
  registry.Set("CLSID\\{0}\\InprocServer32", "/lib/other.so");
  RegisterServer(registry, "/opt/brindleway/brindlewayProj.so");

  std::optional<ServerLocation> found = FindServer(registry, "BRINDLEWAYPROJ.brindleway");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->classGuid, Library().classGuid);
  EXPECT_EQ(found->library, "/opt/brindleway/brindlewayProj.so");
  EXPECT_EQ(registry.Get("TypeLib\\" + String(Library().libraryGuid) + "\\1.0"),
            Library().helpString);

  UnregisterServer(registry);
  EXPECT_FALSE(FindServer(registry, ProgId()));
  EXPECT_FALSE(registry.Get("TypeLib\\" + String(Library().libraryGuid) + "\\1.0"));
  EXPECT_FALSE(registry.Get("Interface\\" + String(Library().interfaceGuid)));
  EXPECT_EQ(FindServer(registry, "Other.Thing")->library, "/lib/other.so");
}

}  // namespace
}  // namespace brindlewayProj::server
