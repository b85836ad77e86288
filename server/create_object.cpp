// CreateObject: registry lookup, loading of the server file, and creation through its factory.
#include <brindleway/dispatch.h>

#include <dlfcn.h>

#include <sstream>

#include "server/class_factory.h"
#include "server/registry.h"
#include "server/server_exports.h"

namespace brindlewayProj::client {
namespace {

[[noreturn]] void RaiseCannotCreate(const String& progId, const String& why) {
  platform::Raise(errCannotCreateObject, "Cannot create object '" + progId + "': " + why);
}

}  // namespace

std::shared_ptr<server::Dispatch> CreateObject(const String& progId) {
  const std::filesystem::path registryFile = server::RegistryFile();
  std::optional<server::ServerLocation> location =
      server::FindServer(server::Registry::Load(registryFile), progId);
  if (!location) RaiseCannotCreate(progId, "not registered in " + registryFile.string());

  // Loaded once and kept: objects and the factory live in the file's code.
  void* library = dlopen(location->library.c_str(), RTLD_NOW);
  if (!library) RaiseCannotCreate(progId, dlerror());
  auto getClassObject =
      reinterpret_cast<server::DllGetClassObjectFn>(dlsym(library, "DllGetClassObject"));
  if (!getClassObject) {
    RaiseCannotCreate(progId, location->library.string() + " has no DllGetClassObject");
  }
  server::ClassFactory* factory = nullptr;
  server::HResult result = getClassObject(location->classGuid.c_str(), &factory);
  if (result != server::kOk || !factory) {
    std::ostringstream code;
    code << std::hex << std::showbase << static_cast<std::uint32_t>(result);
    RaiseCannotCreate(progId,
                      "the server refused class " + location->classGuid + " (" + code.str() + ")");
  }
  return factory->CreateInstance();
}

}  // namespace brindlewayProj::client
