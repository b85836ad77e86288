// The commands that set up: create a store file, register and unregister the server.
#include <filesystem>
#include <memory>

#include <CLI/CLI.hpp>

#include <brindleway/error.h>
#include "server/registry.h"
#include "server/server_exports.h"
#include "server/type_library.h"
#include "store/schema.h"
#include "store/store_name.h"
#include "tools/commands.h"

namespace brindlewayProj::cli {
namespace {

constexpr const char* kCreateFooter =
    R"(Writes a new store file with the tables Customers, Products, Orders and OrderBasket and
the queries OrdersWithNames and BasketList. An existing FILE is never touched (exit code 3).
FILE may be a PostgreSQL connection URI (postgresql://user@host/database) of an empty
database instead; one that holds tables already is never touched either.)";

constexpr const char* kRegisterFooter =
    R"(Enters (or takes out) the server file this program uses, brindlewayProj.so, with class
brindleway, interface _brindleway and type library brindlewayProj, in the registry: the
file named by BRINDLEWAY_REGISTRY, else $XDG_CONFIG_HOME/brindleway/registry, else
~/.config/brindleway/registry. Entries of other servers stay as they are.)";

struct CreateOptions {
  std::filesystem::path file;
  bool sample = false;
};

int Create(const CreateOptions& options, const Program& program) {
  const bool database = store::IsConnectionUri(options.file.native());
  const std::string shown =
      database ? store::WithoutPassword(options.file.native()) : options.file.string();
  std::error_code ignored;
  if (!database && std::filesystem::exists(options.file, ignored)) {
    Program::Fail(shown + " already exists; it is left as it is");
    return kExitEnvironment;
  }
  try {
    store::CreateStore(options.file, options.sample);
  } catch (const platform::Error& failure) {
    Program::Fail("cannot create " + shown + ": " + failure.Description());
    return kExitEnvironment;
  }
  program.Note(String("created ") + (options.sample ? "sample store " : "store ") + shown);
  return kExitOk;
}

int ChangeRegistration(const Program& program, server::HResult (*change)(), const char* done) {
  const String registry = server::RegistryFile().string();
  if (change() != server::kOk) {
    Program::Fail("cannot change the registry " + registry);
    return kExitEnvironment;
  }
  String note = done + (' ' + server::ProgId());
  if (auto location = server::FindServer(server::Registry::Load(registry), server::ProgId())) {
    note += " (" + location->library.string() + ')';
  }
  program.Note(note + " in " + registry);
  return kExitOk;
}

}  // namespace

void AddCreateCommand(CLI::App& app, Program& program) {
  auto options = std::make_shared<CreateOptions>();
  CLI::App* command = app.add_subcommand("create", "Write a new store file");
  command->footer(kCreateFooter);
  command->add_flag("--sample", options->sample,
                    "Add invented customers, products and a few orders with baskets");
  command->add_option("FILE", options->file, "The store file (or PostgreSQL URI) to write")
      ->required();
  command->callback([options, &program] { program.exitCode = Create(*options, program); });
}

void AddRegisterCommands(CLI::App& app, Program& program) {
  CLI::App* enter =
      app.add_subcommand("register", "Enter the server brindlewayProj.so in the registry");
  enter->footer(kRegisterFooter);
  enter->callback([&program] {
    program.exitCode = ChangeRegistration(program, &DllRegisterServer, "registered");
  });
  CLI::App* remove = app.add_subcommand("unregister", "Take the server out of the registry");
  remove->footer(kRegisterFooter);
  remove->callback([&program] {
    program.exitCode = ChangeRegistration(program, &DllUnregisterServer, "unregistered");
  });
}

}  // namespace brindlewayProj::cli
