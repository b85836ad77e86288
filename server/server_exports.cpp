// The entry points of the server file: unload check, class factory, registration.
#include "server/server_exports.h"

#include <dlfcn.h>

#include "platform/ascii.h"
#include "server/class_factory.h"
#include "server/registry.h"
#include "server/type_library.h"

namespace brindlewayProj::server {
namespace {

// A function of this file only: its address names this file even when another copy of the
// server is loaded in the same process.
void AddressInThisFile() {}

// The file this code was loaded from, with an absolute path, as registration records it.
std::filesystem::path ThisServerFile() {
  Dl_info info{};
  if (!dladdr(reinterpret_cast<void*>(&AddressInThisFile), &info) || !info.dli_fname) {
    platform::Raise(platform::errFileNotFound);
  }
  return std::filesystem::weakly_canonical(std::filesystem::absolute(info.dli_fname));
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
