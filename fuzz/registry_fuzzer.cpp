// Fuzzes the registry file reader: Registry::Load on any file content, then FindServer. A file
// is read or refused with 75 (a line without "="); what was read is written back whole, so
// that reading and writing it again gives the same file and finds the same servers.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "fuzz/fuzz_check.h"
#include "server/registry.h"
#include "server/type_library.h"

namespace brindlewayProj::server {
namespace {

using fuzz::Require;

String Contents(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return String(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

bool Same(const std::optional<ServerLocation>& a, const std::optional<ServerLocation>& b) {
  if (!a || !b) return !a && !b;
  return a->classGuid == b->classGuid && a->library == b->library;
}

}  // namespace
}  // namespace brindlewayProj::server

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace brindlewayProj;
  using namespace brindlewayProj::server;
  static const fuzz::ScratchFolder folder("registry_fuzzer");
  const std::filesystem::path file = folder.path() / "registry";
  const String input(reinterpret_cast<const char*>(data), size);
  {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out << input;
    Require(static_cast<bool>(out.flush()), "the registry file could not be written");
  }
  // Beside this server's own id, the id the first line names, as a client might ask for it.
  const String ownId = input.substr(0, input.find_first_of("\\=\n"));

  std::optional<Registry> first;
  try {
    first = Registry::Load(file);
  } catch (const platform::Error& failure) {
    fuzz::RequireNumber(failure, {platform::errPathFileAccess});
    return 0;
  }
  // Once read, writing back and reading again must not fail.
  const auto server = FindServer(*first, ProgId());
  const auto named = FindServer(*first, ownId);
  first->Save();
  const String written = Contents(file);
  const Registry second = Registry::Load(file);
  second.Save();
  Require(Contents(file) == written, "a registry written back reads as another one");
  Require(Same(FindServer(second, ProgId()), server) && Same(FindServer(second, ownId), named),
          "a registry written back finds other servers");
  return 0;
}
