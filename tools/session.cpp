// Creation of the late-bound object for the call and demo commands.
#include "tools/session.h"

#include <brindleway/dispatch.h>
#include "server/registry.h"
#include "server/type_library.h"
#include "tools/store_connection.h"

namespace brindlewayProj::cli {
namespace {

// The server file registered for the class; a class that is not registered raises 429 with
// the command that registers it.
std::filesystem::path RegisteredServer() {
  const std::filesystem::path registry = server::RegistryFile();
  std::optional<server::ServerLocation> location =
      server::FindServer(server::Registry::Load(registry), server::ProgId());
  if (!location) {
    platform::Raise(client::errCannotCreateObject,
                    server::ProgId() + " is not registered in " + registry.string() +
                        "; run 'brindleway register' to register it");
  }
  return location->library;
}

}  // namespace

std::shared_ptr<server::Dispatch> OpenSession(const std::optional<String>& store,
                                              const Program& program) {
  const std::filesystem::path serverFile = RegisteredServer();
  program.Detail("registry " + server::RegistryFile().string() + ", server file " +
                 serverFile.string() + ", store " +
                 (store ? *store : String("as the server's ini file names it")));
  if (!store) return client::CreateObject(server::ProgId());

  std::shared_ptr<server::Dispatch> object = [] {
    QuietMessageBoxes quiet;
    return client::CreateObject(server::ProgId());
  }();
  ConnectToStore(*object, store);
  return object;
}

}  // namespace brindlewayProj::cli
