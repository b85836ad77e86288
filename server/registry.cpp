// Reading and writing the registry file, and finding a server in it.
#include "server/registry.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include <brindleway/error.h>

#include "platform/ascii.h"

namespace brindlewayProj::server {
namespace {

String Key(std::string_view a, std::string_view b) { return String(a) + "\\" + String(b); }

[[noreturn]] void RaiseAccess(const std::filesystem::path& file, const String& what) {
  platform::Raise(platform::errPathFileAccess,
                  platform::RuntimeErrorText(platform::errPathFileAccess) + ": " + what + " '" +
                      file.string() + "'");
}

}  // namespace

bool Registry::KeyLess::operator()(const String& a, const String& b) const {
  return std::ranges::lexicographical_compare(a, b, std::less<>(), platform::AsciiLower,
                                               platform::AsciiLower);
}

std::filesystem::path RegistryFile() {
  if (const char* file = std::getenv("BRINDLEWAY_REGISTRY"); file && *file) return file;
  if (const char* config = std::getenv("XDG_CONFIG_HOME"); config && *config) {
    return std::filesystem::path(config) / "brindleway" / "registry";
  }
  const char* home = std::getenv("HOME");
  return std::filesystem::path(home ? home : ".") / ".config" / "brindleway" / "registry";
}

Registry Registry::Load(const std::filesystem::path& file) {
  Registry registry;
  registry.file_ = file;
  std::error_code absent;
  if (!std::filesystem::exists(file, absent)) return registry;
  std::ifstream in(file);
  if (!in) RaiseAccess(file, "cannot read the registry");
  String line;
  while (std::getline(in, line)) {
    if (line.empty()) continue;
    std::size_t equals = line.find('=');
    if (equals == String::npos) RaiseAccess(file, "malformed line in the registry");
    registry.entries_[line.substr(0, equals)] = line.substr(equals + 1);
  }
  if (in.bad()) RaiseAccess(file, "cannot read the registry");
  return registry;
}

void Registry::Save() const {
  std::error_code failure;
  if (file_.has_parent_path()) std::filesystem::create_directories(file_.parent_path(), failure);
  if (failure) RaiseAccess(file_, "cannot create the folder of the registry");
  std::filesystem::path temporary = file_;
  temporary += ".tmp" + std::to_string(::getpid());
  {
    std::ofstream out(temporary, std::ios::trunc);
    for (const auto& [key, value] : entries_) out << key << '=' << value << '\n';
    out.flush();
    if (!out) {
      out.close();
      std::filesystem::remove(temporary, failure);
      RaiseAccess(file_, "cannot write the registry");
    }
  }
  std::filesystem::rename(temporary, file_, failure);
  if (failure) {
    std::filesystem::remove(temporary, failure);
    RaiseAccess(file_, "cannot replace the registry");
  }
}

std::optional<String> Registry::Get(const String& key) const {
  auto found = entries_.find(key);
  if (found == entries_.end()) return std::nullopt;
  return found->second;
}

void Registry::Set(const String& key, const String& value) {
  // Keys end at the first "=" and values at the line's end, so neither may hold them.
  if (key.empty() || key.find_first_of("=\n") != String::npos || value.find('\n') != String::npos) {
    platform::Raise(platform::errInvalidProcedureCall);
  }
  entries_[key] = value;
}

void Registry::RemoveTree(const String& key) {
  // A key is in the tree when its name plus a closing backslash begins with key and one.
  const String root = key + "\\";
  std::erase_if(entries_, [&](const auto& entry) {
    const String candidate = entry.first + "\\";
    return platform::StartsWithIgnoringAsciiCase(candidate, root);
  });
}

std::optional<ServerLocation> FindServer(const Registry& registry, const String& progId) {
  std::optional<String> classGuid = registry.Get(Key(progId, "CLSID"));
  if (!classGuid) return std::nullopt;
  std::optional<String> library = registry.Get(Key(Key("CLSID", *classGuid), "InprocServer32"));
  if (!library) return std::nullopt;
  return ServerLocation{*classGuid, *library};
}

}  // namespace brindlewayProj::server
