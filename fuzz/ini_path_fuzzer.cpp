// Fuzzes ReadDbPath on any content of brindlewayProj.ini in the component's folder (a
// scratch folder, made once per process). Whatever the file holds, the answer is empty, an
// absolute path (`\\...` or `...:\...`), or a path below App.Path; it comes from one line.
#include <brindleway/hooks.h>

#include <cstdint>
#include <filesystem>
#include <fstream>

#include "component/brindleway_test_access.h"
#include "fuzz/fuzz_check.h"

namespace brindlewayProj {
namespace {

using fuzz::Require;

// The component's folder and one object made in it before any ini file exists; its failed
// connection to the default store shows a message box, which answers silently. The object
// stays to the end of the process and is never destroyed: at exit a thread's runtime state
// goes before objects of static storage do, and a brindleway needs that state as it goes.
struct Component {
  fuzz::ScratchFolder folder{"ini_path_fuzzer"};
  brindleway* object;

  Component() {
    platform::SetMessageBoxHandler([](const String&, Integer) -> Integer { return 1; });
    platform::App::SetPath(folder.path().string());
    object = new brindleway;
  }
};

}  // namespace
}  // namespace brindlewayProj

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace brindlewayProj;
  static Component component;
  {
    std::ofstream ini(component.folder.path() / "brindlewayProj.ini",
                      std::ios::binary | std::ios::trunc);
    ini.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    Require(static_cast<bool>(ini.flush()), "the ini file could not be written");
  }

  const String path = BrindlewayTestAccess::ReadDbPath(*component.object);
  const String below = platform::App::Path() + "\\";
  Require(path.empty() || path.starts_with("\\\\") || path.find(":\\") != String::npos ||
              path.starts_with(below),
          "neither empty, absolute, nor below App.Path");
  Require(path.find_first_of("\r\n") == String::npos, "the path holds a line end");
  return 0;
}
