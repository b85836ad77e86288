// The brindleway program: creates stores, registers the server, calls the component
// late-bound from a shell or a script, and serves it over HTTP.
#include <exception>
#include <iostream>

#include <CLI/CLI.hpp>

#include "server/server_exports.h"
#include "tools/commands.h"
#include "tools/value_text.h"

namespace brindlewayProj::cli {
namespace {

constexpr const char* kFooter = R"(The registry is the file named by BRINDLEWAY_REGISTRY, else
$XDG_CONFIG_HOME/brindleway/registry, else ~/.config/brindleway/registry.
'brindleway COMMAND --help' tells more of a command. Options may stand anywhere on the line.

Exit codes: 0 done; 1 the method answered status -1 or the call failed; 2 a usage error;
3 a file, the registry or the object could not be used.)";

// "brindleway 1.00 (brindlewayProj 1.0.0.0)", from the version block of the server file.
String VersionText() {
  const server::VersionInfo& info = *DllGetVersionInfo();
  return "brindleway " + String(info.productVersionText) + " (" + info.productName + ' ' +
         std::to_string(info.productVersion[0]) + '.' + std::to_string(info.productVersion[1]) +
         '.' + std::to_string(info.productVersion[2]) + '.' +
         std::to_string(info.productVersion[3]) + ")";
}

// The usage error of a command line CLI11 refused, with the help that fits it.
int UsageFailure(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<CLI::App*> commands = app.get_subcommands();
  if (commands.empty() && !app.remaining().empty()) {
    Program::Fail("unknown command '" + app.remaining().front() + "'");
  } else {
    Program::Fail(error.what());
  }
  std::cerr << "see 'brindleway " << (commands.empty() ? "" : commands.back()->get_name() + " ")
            << "--help'\n";
  return kExitUsage;
}

}  // namespace

void Program::Note(const String& text, bool json) const {
  if (!quiet) (json ? std::cerr : std::cout) << text << '\n';
}

void Program::Detail(const String& text) const {
  if (verbose) std::cerr << "brindleway: " << text << '\n';
}

void Program::Fail(const String& text) { std::cerr << "brindleway: " << OneLine(text) << '\n'; }

}  // namespace brindlewayProj::cli

int main(int argc, char** argv) {
  using namespace brindlewayProj::cli;
  Program program;
  CLI::App app("Creates stores of the brindleway component, registers it, and calls it.",
               "brindleway");
  app.fallthrough();  // -q and -v after the command's name too
  app.require_subcommand(1);
  app.footer(kFooter);
  app.set_version_flag("--version", &VersionText, "Print the version of the server file and exit");
  CLI::Option* quiet = app.add_flag("-q,--quiet", program.quiet,
                                    "Print nothing on success but what --json asks for");
  app.add_flag("-v,--verbose", program.verbose,
               "Tell which registry, server file and store are used")
      ->excludes(quiet);
  for (auto add : {&AddCreateCommand, &AddRegisterCommands, &AddCallCommand, &AddDemoCommand,
                    &AddServeCommand}) {
    add(app, program);
  }
  if (argc < 2) {
    std::cerr << app.help();
    return kExitUsage;
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& done) {  // --help, --version
    return app.exit(done);
  } catch (const CLI::ParseError& error) {
    return UsageFailure(app, error);
  } catch (const std::exception& failure) {
    // The commands report their own failures; this is the last word on any other one.
    Program::Fail(failure.what());
    return kExitEnvironment;
  }
  return program.exitCode;
}
