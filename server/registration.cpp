// The entries of this server in the registry: class, interface and type library, under the
// names and ids of the type information.
#include "server/registration.h"

#include <sstream>

#include "server/type_library.h"

namespace brindlewayProj::server {
namespace {

String Key(std::string_view a, std::string_view b) { return String(a) + "\\" + String(b); }

String ClassKey() { return Key("CLSID", Library().classGuid); }
String InterfaceKey() { return Key("Interface", Library().interfaceGuid); }
String TypeLibKey() { return Key("TypeLib", Library().libraryGuid); }
String VersionKey() {
  return Key(TypeLibKey(),
             std::to_string(Library().majorVersion) + "." + std::to_string(Library().minorVersion));
}
String LocaleKey() {
  std::ostringstream hex;
  hex << std::hex << Library().localeId;
  return Key(Key(VersionKey(), hex.str()), "linux");
}

}  // namespace

void RegisterServer(Registry& registry, const std::filesystem::path& library) {
  const LibraryInfo& info = Library();
  const String path = library.string();
  registry.Set(Key(ProgId(), "CLSID"), String(info.classGuid));
  registry.Set(ClassKey(), String(info.className));
  registry.Set(Key(ClassKey(), "InprocServer32"), path);
  registry.Set(Key(ClassKey(), "ProgID"), ProgId());
  registry.Set(Key(ClassKey(), "TypeLib"), String(info.libraryGuid));
  registry.Set(InterfaceKey(), String(info.interfaceName));
  registry.Set(Key(InterfaceKey(), "TypeLib"), String(info.libraryGuid));
  registry.Set(VersionKey(), String(info.helpString));
  registry.Set(LocaleKey(), path);
}

void UnregisterServer(Registry& registry) {
  registry.RemoveTree(ProgId());
  registry.RemoveTree(ClassKey());
  registry.RemoveTree(InterfaceKey());
  registry.RemoveTree(TypeLibKey());
}

}  // namespace brindlewayProj::server
