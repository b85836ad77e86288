// brindleway call: one late-bound call of a method of _brindleway, with its report, or with
// "-" a batch of calls read as JSON lines, all on one object.
#include <algorithm>
#include <cctype>
#include <iostream>
#include <memory>
#include <optional>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "server/type_library.h"
#include "tools/commands.h"
#include "tools/json_forms.h"
#include "tools/late_call.h"
#include "tools/session.h"

namespace brindlewayProj::cli {
namespace {

constexpr const char* kCallFooter =
    R"(Creates brindlewayProj.brindleway through the registry (run 'brindleway register' first),
calls METHOD late-bound with the arguments given by name, and prints the status (or the
result), ReturnMsg, and every argument the call changed; collections and recordsets as
their rows. Texts are quoted with JSON's escapes and dates are ISO 8601. Without --store
the object uses its own store: the one brindlewayProj.ini beside the server names, else
brindleway.mdb there.

Values are typed by the parameter: OrderId=7 is a Long; dates are text such as 2026-11-22
or 11/22/26; Booleans True/False. An optional Variant takes the type its name tells
(ilng Long, iint Integer, idtm Date, otherwise String). A Collection given as text is a
comma-separated list. ReturnMsg, the outputs (o...) and objects left out are supplied.
'brindleway call METHOD --help' shows the method's parameters.

--json prints one JSON object instead: {"method", "status" (or "result"), "ReturnMsg",
"changed": {name: value}}, with a collection as an array, a recordset as an array of
objects keyed by field name, and a failure as "error": {"kind", "number", "message"}.

'brindleway call --json -' reads one call per line from standard input, such as
  {"id": 1, "method": "BasketList", "arguments": {"OrderId": 7}}
and answers each with one JSON line as above (with its "id"), all on one object. Its exit
code is the most serious of its calls'.

Exit codes: 0 the method answered status 0 or more; 1 it answered -1 or the call failed;
2 unknown method or parameter, or a bad value; 3 the object or the store is unusable.)";

struct CallOptions {
  String store;
  bool json = false;
  bool help = false;
  String method;
  std::vector<String> assignments;
};

String MethodList() {
  String list = "Methods of _brindleway:\n";
  for (const server::MethodInfo& method : server::Methods()) {
    list += "  " + server::Signature(method) + '\n';
  }
  return list;
}

void PrintMethodHelp(const server::MethodInfo& method) {
  std::cout << server::Signature(method) << "\n\ndispatch id 0x" << std::hex << method.dispId
            << std::dec << "; parameters:\n";
  for (const server::ParamInfo& param : method.params) {
    std::cout << "  " << param.name << "  " << server::TypeName(param.type)
              << (param.optional ? ", optional" : "") << '\n';
  }
}

// With -v, where a call that failed in the store failed: the query text and the engine's own
// code and message.
void PrintFailureContext(const platform::FailureContext& context, const Program& program) {
  if (context.query.empty() && context.engineMessage.empty()) return;
  program.Detail("failed query: " + context.query + "\nengine code: " +
                 std::to_string(context.engineCode) + "\nengine message: " + context.engineMessage);
}

// One call of the batch, a JSON object: its answer, and the exit code it stands for.
std::pair<Json, int> BatchCall(server::Dispatch& object, const Json& call) {
  try {
    if (!call.is_object()) throw UsageError("a call is a JSON object");
    for (const auto& [key, value] : call.items()) {
      if (key != "id" && key != "method" && key != "arguments") {
        throw UsageError("a call has \"method\", \"arguments\" and \"id\", not \"" + key + "\"");
      }
    }
    if (!call.contains("method") || !call["method"].is_string()) {
      throw UsageError("a call needs \"method\": the method's name");
    }
    const server::MethodInfo& method = MethodNamed(call["method"].get<String>());
    const std::vector<GivenArgument> given =
        GivenArgumentsOf(call.contains("arguments") ? call["arguments"] : Json::object());
    std::vector<server::Argument> arguments = ArgumentsFromValues(method, given);
    const CallReport report = CallMethod(object, method, arguments);
    return {JsonOf(report), ExitCodeOf(report)};
  } catch (const UsageError& usage) {
    return {ErrorJson("usage", usage.what()), kExitUsage};
  }
}

bool IsBlank(const String& line) {
  return std::all_of(line.begin(), line.end(),
                     [](char c) { return std::isspace(static_cast<unsigned char>(c)); });
}

// Answers every line of `in` until its end, each at once; blank lines are skipped.
int RunBatch(server::Dispatch& object, std::istream& in) {
  int exitCode = kExitOk;
  for (String line; std::getline(in, line);) {
    if (IsBlank(line)) continue;
    Json call;
    std::pair<Json, int> answer;
    try {
      call = Json::parse(line);
      answer = BatchCall(object, call);
    } catch (const Json::exception& malformed) {
      answer = {ErrorJson("usage", String("not a JSON call: ") + malformed.what()), kExitUsage};
    }
    if (call.is_object() && call.contains("id")) {
      Json withId = {{"id", call["id"]}};
      withId.update(answer.first);
      answer.first = std::move(withId);
    }
    std::cout << JsonLine(answer.first) << std::endl;  // flushed: a script may wait for it
    exitCode = std::max(exitCode, answer.second);
  }
  return exitCode;
}

int Call(const CallOptions& options, const CLI::Option& storeGiven, const Program& program) {
  // Failures before the call are reported on standard error, or as JSON with --json.
  auto fail = [&](const char* kind, const String& message, int exitCode) {
    if (options.json) {
      std::cout << JsonLine(ErrorJson(kind, message)) << '\n';
    } else {
      Program::Fail(message);
    }
    return exitCode;
  };
  const std::optional<String> store =
      storeGiven.count() ? std::optional<String>(options.store) : std::nullopt;
  const bool batch = options.method == "-";
  try {
    if (options.method.empty()) {
      throw UsageError("call needs a METHOD (see 'brindleway call --help')");
    }
    if (batch && (!options.json || !options.assignments.empty())) {
      throw UsageError("a batch is 'brindleway call --json -', with the calls on standard input");
    }
    const server::MethodInfo* method = batch ? nullptr : &MethodNamed(options.method);
    std::vector<server::Argument> arguments;
    if (method) arguments = ArgumentsFromText(*method, options.assignments);
    std::shared_ptr<server::Dispatch> object;
    try {
      object = OpenSession(store, program);
    } catch (const platform::Error& failure) {
      return fail("environment", failure.Description(), kExitEnvironment);
    }
    if (batch) return RunBatch(*object, std::cin);

    platform::Err().Clear();
    const CallReport report = CallMethod(*object, *method, arguments);
    if (ExitCodeOf(report) != kExitOk) {
      PrintFailureContext(report.failure ? report.failure->Context() : platform::Err().Context,
                          program);
    }
    if (options.json) {
      std::cout << JsonLine(JsonOf(report)) << '\n';
    } else {
      if (!program.quiet || report.failure) WriteText(report, std::cout);
      if (report.failure) {
        Program::Fail("the call failed: error " + std::to_string(report.failure->Number()) + ": " +
                      report.failure->Description());
      }
    }
    return ExitCodeOf(report);
  } catch (const UsageError& usage) {
    return fail("usage", usage.what(), kExitUsage);
  }
}

}  // namespace

void AddCallCommand(CLI::App& app, Program& program) {
  auto options = std::make_shared<CallOptions>();
  CLI::App* command =
      app.add_subcommand("call", "Create brindlewayProj.brindleway and call one method");
  command->footer(kCallFooter + ("\n\n" + MethodList()));
  // Help is the command's own: with a METHOD it shows that method's parameters.
  command->set_help_flag();
  command->add_flag("-h,--help", options->help, "Print this help, or the METHOD's, and exit");
  CLI::Option* store = command->add_option("--store", options->store,
                                           "Connect the object to this store file or PostgreSQL URI (DbConnect)");
  command->add_flag("--json", options->json, "Answer in JSON; with METHOD '-', a batch of calls");
  command->add_option("METHOD", options->method, "The method to call, or '-' for a batch");
  command->add_option("ARGUMENTS", options->assignments, "Name=value for each argument given");
  command->callback([options, store, command, &program] {
    if (!options->help) {
      program.exitCode = Call(*options, *store, program);
    } else if (const server::MethodInfo* method = server::FindMethod(options->method)) {
      PrintMethodHelp(*method);
    } else {
      std::cout << command->help("brindleway");
    }
  });
}

}  // namespace brindlewayProj::cli
