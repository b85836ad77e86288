// The commands of the brindleway program. Each command file has one function that adds its
// subcommand (options, help and action) to the command line; main() calls them in turn, so a
// new command is a new file and one more line there.
#pragma once

#include <brindleway/types.h>

namespace CLI {
class App;
}

namespace brindlewayProj::cli {

// Exit codes that scripts can test.
enum ExitCode : int {
  kExitOk = 0,
  kExitCallFailed = 1,   // the method answered status -1, or the call itself failed
  kExitUsage = 2,        // unknown command, method, parameter or option; a value of the wrong type
  kExitEnvironment = 3,  // a file or the registry could not be used; the object was not created
};

// What every command shares: the options given before or after its name, and the exit code
// its action leaves.
class Program {
 public:
  bool quiet = false;    // -q: nothing on standard output but what --json asks for
  bool verbose = false;  // -v: which registry, server file and store are used
  int exitCode = kExitOk;

  // A message for people about what was done ("created store ..."): on standard output, or
  // with --json on standard error; nothing with -q.
  void Note(const String& text, bool json = false) const;
  // A detail for -v, on standard error.
  void Detail(const String& text) const;
  // A failure, on standard error: "brindleway: text".
  static void Fail(const String& text);
};

void AddCreateCommand(CLI::App& app, Program& program);
void AddRegisterCommands(CLI::App& app, Program& program);
void AddCallCommand(CLI::App& app, Program& program);
void AddDemoCommand(CLI::App& app, Program& program);
void AddServeCommand(CLI::App& app, Program& program);

}  // namespace brindlewayProj::cli
