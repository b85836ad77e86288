// Quiet message boxes and DbConnect on a late-bound object.
#include "tools/store_connection.h"

#include <vector>

#include "platform/message_box.h"

namespace brindlewayProj::cli {

QuietMessageBoxes::QuietMessageBoxes() {
  platform::SetMessageBoxHandler([](const String&, Integer) { return Integer{platform::vbOK}; });
}

QuietMessageBoxes::~QuietMessageBoxes() { platform::SetMessageBoxHandler({}); }

std::shared_ptr<dao::Database> ConnectToStore(server::Dispatch& object,
                                              const std::optional<String>& store) {
  std::vector<server::Argument> arguments{
      {"ReturnMsg", String()}, {"WSpace", nullptr}, {"DBase", nullptr}};
  if (store) arguments.push_back({"sDbFileName", *store});
  if (CInt(object.Invoke("DbConnect", arguments)) < 0) {
    platform::Raise(platform::errPathFileAccess, CStr(arguments[0].value));
  }
  return arguments[2].value.ObjectAs<dao::Database>();
}

}  // namespace brindlewayProj::cli
