// The host's file names: paths as the component writes them (with "\" or "/", and drive
// letters) mapped to this system's paths, and the runtime's Dir.
#pragma once

#include <filesystem>

#include <brindleway/types.h>

namespace brindlewayProj::platform {

// "\" and "/" both separate; a leading drive letter with ":\" names the root
// ("Z:\srv\shop.mdb" is "/srv/shop.mdb").
std::filesystem::path ToHostPath(const String& path);

// The file name of an existing regular file at `path`, otherwise the empty String; the
// empty String for an empty path. `attributes` 0 asks for normal files.
String Dir(const String& path, Integer attributes = 0);

}  // namespace brindlewayProj::platform
