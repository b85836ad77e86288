// The entry points of the server file: unload check, class factory, registration, version.
#include "server/server_exports.h"

#include <dlfcn.h>

#include <brindleway/version.h>

#include "platform/ascii.h"
#include "server/class_factory.h"
#include "server/registration.h"
#include "server/type_library.h"

namespace brindlewayProj::server {
namespace {

// A function of this file only: its address names this file even when another copy of the
// server is loaded in the same process.
void AddressInThisFile() {}

// The file this code was loaded from, with an absolute path, as registration records it.
// Loaded through its soname (brindlewayProj.so.1), it is recorded as brindlewayProj.so beside
// it when that link leads to the same file, so that the registry keeps the component's name.
std::filesystem::path ThisServerFile() {
  Dl_info info{};
  if (!dladdr(reinterpret_cast<void*>(&AddressInThisFile), &info) || !info.dli_fname) {
    platform::Raise(platform::errFileNotFound);
  }
  const std::filesystem::path loaded = std::filesystem::absolute(info.dli_fname);
  const std::filesystem::path folder = std::filesystem::weakly_canonical(loaded.parent_path());
  std::error_code error;
  if (std::filesystem::equivalent(folder / BRINDLEWAY_FILE_NAME, loaded, error)) {
    return folder / BRINDLEWAY_FILE_NAME;
  }
  return std::filesystem::weakly_canonical(loaded);
}

// Runs a change of the registry file; any failure answers kRegistrationFailed.
template <class Change>
HResult ChangeRegistry(Change&& change) {
  try {
    Registry registry = Registry::Load(RegistryFile());
    change(registry);
    registry.Save();
    return kOk;
  } catch (const std::exception&) {
    return kRegistrationFailed;
  }
}

}  // namespace
}  // namespace brindlewayProj::server

using namespace brindlewayProj::server;

extern "C" HResult DllCanUnloadNow() { return ObjectsAlive() == 0 ? kOk : kFalse; }

extern "C" HResult DllGetClassObject(const char* classGuid, ClassFactory** factory) {
  if (!classGuid || !factory) return kPointerError;
  *factory = nullptr;
  if (!brindlewayProj::platform::EqualsIgnoringAsciiCase(classGuid, Library().classGuid)) return kClassNotAvailable;
  *factory = &BrindlewayClassFactory();
  return kOk;
}

extern "C" HResult DllRegisterServer() {
  return ChangeRegistry([](Registry& registry) { RegisterServer(registry, ThisServerFile()); });
}

extern "C" HResult DllUnregisterServer() {
  return ChangeRegistry([](Registry& registry) { UnregisterServer(registry); });
}

extern "C" const VersionInfo* DllGetVersionInfo() {
  static constexpr VersionInfo info{
      sizeof(VersionInfo),
      {BRINDLEWAY_VERSION_MAJOR, BRINDLEWAY_VERSION_MINOR, BRINDLEWAY_VERSION_PATCH,
       BRINDLEWAY_VERSION_TWEAK},
      {BRINDLEWAY_VERSION_MAJOR, BRINDLEWAY_VERSION_MINOR, BRINDLEWAY_VERSION_PATCH,
       BRINDLEWAY_VERSION_TWEAK},
      BRINDLEWAY_VERSION_TEXT,
      BRINDLEWAY_VERSION_TEXT,
      BRINDLEWAY_PRODUCT_NAME,
      BRINDLEWAY_PRODUCT_NAME,
      BRINDLEWAY_FILE_NAME,
  };
  return &info;
}
