// The brindleway program: creates stores, registers the server, and calls the component
// late-bound from a shell.
#include <exception>
#include <iostream>
#include <string_view>
#include <vector>

#include "server/server_exports.h"
#include "tools/commands.h"

namespace {

constexpr std::string_view kUsage = R"(Usage: brindleway COMMAND [ARGUMENTS]

Commands:
  create [--sample] FILE        write a new store file (with invented sample data)
  register                      enter the server brindlewayProj.so in the registry
  unregister                    take it out again
  call [--store FILE] METHOD [Name=value ...]
                                create brindlewayProj.brindleway and call one method
  demo [--store FILE]           walk through a typical sale, printing every call
  --version                     the version of the server file this program uses

'brindleway COMMAND --help' tells more. The registry is the file named by
BRINDLEWAY_REGISTRY, else $XDG_CONFIG_HOME/brindleway/registry, else
~/.config/brindleway/registry.

Exit codes: 0 done; 1 the method answered status -1 or the call failed; 2 a usage
error; 3 a file, the registry or the object could not be used.
)";

// "brindleway 1.00 (brindlewayProj 1.0.0.0)", from the version block of the loaded server.
void PrintVersion() {
  const brindlewayProj::server::VersionInfo& info = *DllGetVersionInfo();
  std::cout << "brindleway " << info.productVersionText << " (" << info.productName << ' '
            << info.productVersion[0] << '.' << info.productVersion[1] << '.'
            << info.productVersion[2] << '.' << info.productVersion[3] << ")\n";
}

}  // namespace

int main(int argc, char** argv) {
  using namespace brindlewayProj::cli;
  std::vector<brindlewayProj::String> words(argv + 1, argv + argc);
  if (words.empty()) {
    std::cerr << kUsage;
    return kExitUsage;
  }
  const brindlewayProj::String command = words.front();
  Words rest = Words(words).subspan(1);
  if (command == "--help" || command == "-h" || command == "help") {
    std::cout << kUsage;
    return kExitOk;
  }
  if (command == "--version") {
    PrintVersion();
    return kExitOk;
  }
  try {
    if (command == "create") return CreateCommand(rest);
    if (command == "register") return RegisterCommand(rest);
    if (command == "unregister") return UnregisterCommand(rest);
    if (command == "call") return CallCommand(rest);
    if (command == "demo") return DemoCommand(rest);
  } catch (const std::exception& failure) {
    // The commands report their own failures; this is the last word on any other one.
    std::cerr << "brindleway: " << failure.what() << '\n';
    return kExitEnvironment;
  }
  std::cerr << "brindleway: unknown command '" << command << "'\n\n" << kUsage;
  return kExitUsage;
}
