// The commands that set up: create a store file, register and unregister the server.
#include <iostream>

#include "server/registry.h"
#include "server/server_exports.h"
#include "server/type_library.h"
#include <brindleway/error.h>
#include "store/schema.h"
#include "tools/commands.h"

namespace brindlewayProj::cli {
namespace {

constexpr const char* kCreateHelp = R"(Usage: brindleway create [--sample] FILE

Writes a new store file with the tables Customers, Products, Orders and OrderBasket and
the queries OrdersWithNames and BasketList. --sample adds invented customers, products
and a few orders with baskets. An existing FILE is never touched (exit code 3).
)";

constexpr const char* kRegisterHelp = R"(Usage: brindleway register
       brindleway unregister

Enters (or takes out) the server file this program uses, brindlewayProj.so, with class
brindleway, interface _brindleway and type library brindlewayProj, in the registry: the
file named by BRINDLEWAY_REGISTRY, else $XDG_CONFIG_HOME/brindleway/registry, else
~/.config/brindleway/registry. Entries of other servers stay as they are.
)";

int ChangeRegistration(Words words, server::HResult (*change)(), const char* done) {
  if (AsksForHelp(words)) {
    std::cout << kRegisterHelp;
    return kExitOk;
  }
  if (!words.empty()) {
    std::cerr << "brindleway: unexpected '" << words.front() << "'\n\n" << kRegisterHelp;
    return kExitUsage;
  }
  const String registry = server::RegistryFile().string();
  if (change() != server::kOk) {
    std::cerr << "brindleway: cannot change the registry " << registry << '\n';
    return kExitEnvironment;
  }
  std::cout << done << ' ' << server::ProgId();
  if (auto location = server::FindServer(server::Registry::Load(registry), server::ProgId())) {
    std::cout << " (" << location->library.string() << ')';
  }
  std::cout << " in " << registry << '\n';
  return kExitOk;
}

}  // namespace

bool AsksForHelp(Words words) {
  for (const String& word : words) {
    if (word == "--help" || word == "-h") return true;
  }
  return false;
}

int CreateCommand(Words words) {
  if (AsksForHelp(words)) {
    std::cout << kCreateHelp;
    return kExitOk;
  }
  bool withSample = !words.empty() && words.front() == "--sample";
  if (withSample) words = words.subspan(1);
  if (words.size() != 1 || words.front().starts_with("-")) {
    std::cerr << "brindleway: create takes one FILE\n\n" << kCreateHelp;
    return kExitUsage;
  }
  const std::filesystem::path file = words.front();
  std::error_code ignored;
  if (std::filesystem::exists(file, ignored)) {
    std::cerr << "brindleway: " << file.string() << " already exists; it is left as it is\n";
    return kExitEnvironment;
  }
  try {
    store::CreateStore(file, withSample);
  } catch (const platform::Error& failure) {
    std::cerr << "brindleway: cannot create " << file.string() << ": " << failure.Description()
              << '\n';
    return kExitEnvironment;
  }
  std::cout << "created " << (withSample ? "sample store " : "store ") << file.string() << '\n';
  return kExitOk;
}

int RegisterCommand(Words words) {
  return ChangeRegistration(words, &DllRegisterServer, "registered");
}

int UnregisterCommand(Words words) {
  return ChangeRegistration(words, &DllUnregisterServer, "unregistered");
}

}  // namespace brindlewayProj::cli
