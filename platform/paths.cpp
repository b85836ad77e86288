// Host paths from the component's paths, and the runtime's Dir.
#include "platform/paths.h"

#include <algorithm>
#include <cctype>

namespace brindlewayProj::platform {

std::filesystem::path ToHostPath(const String& path) {
  String mapped = path;
  // "Z:\srv" names the host's root; the drive letter itself means nothing here.
  if (mapped.size() >= 3 && std::isalpha(static_cast<unsigned char>(mapped[0])) &&
      mapped[1] == ':' && (mapped[2] == '\\' || mapped[2] == '/')) {
    mapped.erase(0, 2);
  }
  std::replace(mapped.begin(), mapped.end(), '\\', '/');
  return std::filesystem::path(mapped);
}

String Dir(const String& path, Integer /*attributes*/) {
  // A NUL would cut the name short at the system call and test another file.
  if (path.empty() || path.find('\0') != String::npos) return String();
  const std::filesystem::path host = ToHostPath(path);
  std::error_code error;
  if (!std::filesystem::is_regular_file(host, error)) return String();
  return host.filename().string();
}

}  // namespace brindlewayProj::platform
