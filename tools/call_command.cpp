// brindleway call: one late-bound call of a method of _brindleway, with its report.
#include <iostream>
#include <optional>

#include "server/type_library.h"
#include "tools/commands.h"
#include "tools/late_call.h"
#include "tools/session.h"

namespace brindlewayProj::cli {
namespace {

constexpr const char* kCallHelp = R"(Usage: brindleway call [--store FILE] [--verbose] METHOD [Name=value ...]

Creates brindlewayProj.brindleway through the registry (run 'brindleway register' first),
calls METHOD late-bound with the arguments given by name, and prints the status (or the
result), ReturnMsg, and every argument the call changed; collections and recordsets as
their rows. Without --store the object uses its own store: the one brindlewayProj.ini
beside the server names, else brindleway.mdb there. --store FILE connects it to FILE.
--verbose (-v) adds, for a call that failed in the store, the query text that failed and
the storage engine's own code and message.

Values are typed by the parameter: OrderId=7 is a Long; dates are text such as 2026-11-22
or 11/22/26; Booleans True/False. An optional Variant takes the type its name tells
(ilng Long, iint Integer, idtm Date, otherwise String). A Collection given as text is a
comma-separated list. ReturnMsg, the outputs (o...) and objects left out are supplied.

Exit codes: 0 the method answered status 0 or more; 1 it answered -1 or the call failed;
2 unknown method or parameter, or a bad value; 3 the object or the store is unusable.
)";

void PrintMethodHelp(const server::MethodInfo& method) {
  std::cout << server::Signature(method) << "\n\ndispatch id 0x" << std::hex << method.dispId
            << std::dec << "; parameters:\n";
  for (const server::ParamInfo& param : method.params) {
    std::cout << "  " << param.name << "  " << server::TypeName(param.type)
              << (param.optional ? ", optional" : "") << '\n';
  }
}

void PrintCallHelp() {
  std::cout << kCallHelp << "\nMethods of _brindleway:\n";
  for (const server::MethodInfo& method : server::Methods()) {
    std::cout << "  " << server::Signature(method) << '\n';
  }
}

// The context the store kept of the call's failure, if any: what --verbose adds.
void PrintFailureContext() {
  const platform::FailureContext& context = platform::Err().Context;
  if (context.query.empty() && context.engineMessage.empty()) return;
  std::cerr << "failed query: " << context.query << "\nengine code: " << context.engineCode
            << "\nengine message: " << context.engineMessage << '\n';
}

}  // namespace

int CallCommand(Words words) {
  std::optional<String> store;
  bool verbose = false;
  while (!words.empty()) {
    if (words.size() >= 2 && words.front() == "--store") {
      store = words[1];
      words = words.subspan(2);
    } else if (words.front() == "--verbose" || words.front() == "-v") {
      verbose = true;
      words = words.subspan(1);
    } else {
      break;
    }
  }
  const bool help = AsksForHelp(words);
  try {
    if (words.empty() || words.front().starts_with("-")) {
      if (help) {
        PrintCallHelp();
        return kExitOk;
      }
      throw UsageError("call needs a METHOD (see 'brindleway call --help')");
    }
    const server::MethodInfo& method = MethodNamed(words.front());
    if (help) {
      PrintMethodHelp(method);
      return kExitOk;
    }
    std::vector<server::Argument> arguments = ArgumentsFromText(method, words.subspan(1));
    std::shared_ptr<server::Dispatch> object;
    try {
      object = OpenSession(store);
    } catch (const platform::Error& failure) {
      std::cerr << "brindleway: " << failure.Description() << '\n';
      return kExitEnvironment;
    }
    platform::Err().Clear();
    Variant result = CallAndReport(*object, method, arguments, std::cout);
    const bool failed = method.result == server::TypeKind::Integer && CInt(result) < 0;
    if (failed && verbose) PrintFailureContext();
    return failed ? kExitCallFailed : kExitOk;
  } catch (const UsageError& usage) {
    std::cerr << "brindleway: " << usage.what() << '\n';
    return kExitUsage;
  } catch (const platform::Error& failure) {
    std::cerr << "brindleway: the call failed: error " << failure.Number() << ": "
              << failure.Description() << '\n';
    if (verbose) PrintFailureContext();
    return kExitCallFailed;
  }
}

}  // namespace brindlewayProj::cli
