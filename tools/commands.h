// The commands of the brindleway program. Each takes the words after its name and answers
// the process's exit code (see ExitCode).
#pragma once

#include <span>

#include <brindleway/types.h>

namespace brindlewayProj::cli {

// Exit codes that scripts can test.
enum ExitCode : int {
  kExitOk = 0,
  kExitCallFailed = 1,   // the method answered status -1, or the call itself failed
  kExitUsage = 2,        // unknown command, method, parameter or option; a value of the wrong type
  kExitEnvironment = 3,  // a file or the registry could not be used; the object was not created
};

using Words = std::span<const String>;

int CreateCommand(Words words);
int RegisterCommand(Words words);
int UnregisterCommand(Words words);
int CallCommand(Words words);
int DemoCommand(Words words);

// Whether `words` asks for help ("--help" or "-h" anywhere).
bool AsksForHelp(Words words);

}  // namespace brindlewayProj::cli
