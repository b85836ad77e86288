// The registry of servers: a text file of "key=value" lines, per user, where registration
// enters class, interface and type library and where clients find the server's file.
//
// Its place: the file named by BRINDLEWAY_REGISTRY when that is set (tests use it), else
// $XDG_CONFIG_HOME/brindleway/registry, else ~/.config/brindleway/registry.
#pragma once

#include <filesystem>
#include <map>
#include <optional>

#include <brindleway/types.h>

namespace brindlewayProj::server {

std::filesystem::path RegistryFile();

// The keys and values of one registry file, read whole and written back whole. Keys are
// compared without regard to case, as the platform's registry compares them.
class Registry {
 public:
  // Reads `file`; a file that does not exist is an empty registry. An unreadable file, or a
  // line without "=", raises 75 "Path/File access error".
  static Registry Load(const std::filesystem::path& file);
  // Writes the file anew (through a temporary file and a rename, so that readers see the old
  // or the new registry whole), creating its folder; a failure raises 75.
  void Save() const;

  std::optional<String> Get(const String& key) const;
  void Set(const String& key, const String& value);
  // Removes `key` and every key below it ("key\...").
  void RemoveTree(const String& key);

 private:
  struct KeyLess {
    bool operator()(const String& a, const String& b) const;
  };
  std::filesystem::path file_;
  std::map<String, String, KeyLess> entries_;
};

// The server file registered for a programmatic id such as "brindlewayProj.brindleway", and
// the class id to ask its factory for; nullopt when the id is not registered.
struct ServerLocation {
  String classGuid;
  std::filesystem::path library;
};
std::optional<ServerLocation> FindServer(const Registry& registry, const String& progId);

}  // namespace brindlewayProj::server
