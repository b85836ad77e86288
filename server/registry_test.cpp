// The registry file: where it lies, reading and writing it, and this server's entries in it.
#include "server/registry.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "server/type_library.h"
#include <brindleway/error.h>
#include "tests/support/test_support.h"

namespace brindlewayProj::server {
namespace {

using testing::TempDir;

// Sets or unsets an environment variable while it lives, restoring the old value after.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    value ? setenv(name, value, 1) : unsetenv(name);
  }
  ~ScopedEnv() { old_ ? setenv(name_, old_->c_str(), 1) : unsetenv(name_); }

 private:
  const char* name_;
  std::optional<String> old_;
};

TEST(RegistryFileTest, OverrideThenConfigHomeThenHome) {
  struct Case {
    const char* registry;
    const char* configHome;
    const char* expected;
  };
  const Case cases[] = {
      {"/tmp/r/registry", "/cfg", "/tmp/r/registry"},
      {nullptr, "/cfg", "/cfg/brindleway/registry"},
      {"", "", "/home/someone/.config/brindleway/registry"},
  };
  ScopedEnv home("HOME", "/home/someone");
  for (const Case& c : cases) {
    ScopedEnv registry("BRINDLEWAY_REGISTRY", c.registry);
    ScopedEnv config("XDG_CONFIG_HOME", c.configHome);
    EXPECT_EQ(RegistryFile(), c.expected);
  }
}

TEST(RegistryTest, SavesAndLoadsEntriesAndRemovesOnlyTheTreeAsked) {
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
}

TEST(RegistryTest, AMalformedFileIsAnAccessError) {
  TempDir dir;
  std::ofstream(dir / "registry") << "no separator here\n";
  try {
    Registry::Load(dir / "registry");
    FAIL();
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
