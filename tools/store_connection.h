// Connecting a late-bound object to a store, shared by the program's commands and the web
// service: quiet message boxes while the object is made, and DbConnect with its database.
#pragma once

#include <memory>
#include <optional>

#include <brindleway/dao.h>
#include <brindleway/dispatch.h>

namespace brindlewayProj::cli {

// Answers every message box at once, without showing it, while it lives.
class QuietMessageBoxes {
 public:
  QuietMessageBoxes();
  ~QuietMessageBoxes();
  QuietMessageBoxes(const QuietMessageBoxes&) = delete;
  QuietMessageBoxes& operator=(const QuietMessageBoxes&) = delete;
};

// Calls DbConnect on `object`: to the store file `store`, or without one to the store the
// object settled at its creation. Answers the database DbConnect opened; a refused connection
// raises platform::Error 75 with DbConnect's ReturnMsg.
std::shared_ptr<dao::Database> ConnectToStore(server::Dispatch& object,
                                              const std::optional<String>& store);

}  // namespace brindlewayProj::cli
