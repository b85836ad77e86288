// Creation of the late-bound object for the call and demo commands.
#include "tools/session.h"

#include "server/type_library.h"
#include "platform/message_box.h"
#include <brindleway/dispatch.h>

namespace brindlewayProj::cli {
namespace {

// Answers every message box at once, without showing it, while it lives.
class QuietMessageBoxes {
 public:
  QuietMessageBoxes() {
    platform::SetMessageBoxHandler([](const String&, Integer) { return Integer{platform::vbOK}; });
  }
  ~QuietMessageBoxes() { platform::SetMessageBoxHandler({}); }
};

}  // namespace

std::shared_ptr<server::Dispatch> OpenSession(const std::optional<String>& store) {
  if (!store) return client::CreateObject(server::ProgId());

  std::shared_ptr<server::Dispatch> object = [] {
    QuietMessageBoxes quiet;
    return client::CreateObject(server::ProgId());
  }();

  std::vector<server::Argument> arguments{
      {"ReturnMsg", String()}, {"WSpace", nullptr}, {"DBase", nullptr}, {"sDbFileName", *store}};
  if (CInt(object->Invoke("DbConnect", arguments)) < 0) {
    platform::Raise(platform::errPathFileAccess, CStr(arguments[0].value));
  }
  return object;
}

}  // namespace brindlewayProj::cli
