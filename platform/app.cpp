// App.Path and App.EXEName: the folder of the loaded component file, found through the
// dynamic loader, and the component's name.
#include <brindleway/hooks.h>

#include <dlfcn.h>

#include <filesystem>
#include <mutex>

namespace brindlewayProj::platform {
namespace {

std::mutex pathMutex;
String pathOverride;  // guarded by pathMutex

// The folder of the file that holds this very function, i.e. brindlewayProj.so.
String LoadedFolder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&LoadedFolder), &info) == 0 || info.dli_fname == nullptr) {
    return String();
  }
  std::error_code ignored;
  std::filesystem::path file = std::filesystem::absolute(info.dli_fname, ignored);
  if (file.empty()) file = info.dli_fname;
  return file.parent_path().string();
}

}  // namespace

String App::Path() {
  {
    std::lock_guard lock(pathMutex);
    if (!pathOverride.empty()) return pathOverride;
  }
  static const String loaded = LoadedFolder();
  return loaded;
}

String App::EXEName() { return "brindlewayProj"; }

void App::SetPath(const String& path) {
  std::lock_guard lock(pathMutex);
  pathOverride = path;
}

}  // namespace brindlewayProj::platform
