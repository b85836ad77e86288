// Registration of this server: what DllRegisterServer enters in the registry and
// DllUnregisterServer takes out again.
#pragma once

#include <filesystem>

#include "server/registry.h"

namespace brindlewayProj::server {

// Enters class brindleway, interface _brindleway and library brindlewayProj with the server
// file `library`, under the names and ids of the type library.
void RegisterServer(Registry& registry, const std::filesystem::path& library);
// Takes out everything RegisterServer entered; entries of other servers stay.
void UnregisterServer(Registry& registry);

}  // namespace brindlewayProj::server
