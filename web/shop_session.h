// The component object of one worker thread of the service: the late-bound object of the
// component the program links, connected to the store, with the database it opened for the
// catalogue reads.
#pragma once

#include <memory>
#include <optional>

#include <brindleway/dao.h>
#include <brindleway/dispatch.h>

namespace brindlewayProj::web {

struct ShopSession {
  std::shared_ptr<server::Dispatch> object;
  std::shared_ptr<dao::Database> database;
};

// Creates an object of class brindleway from the linked component (no registry is read) on
// the calling thread, and connects it to the store file `store`, or without one to the store
// its ini file names. A store that cannot be opened raises platform::Error with DbConnect's
// ReturnMsg. The message box of a failed connection at creation is shown unless the caller
// answers message boxes (as the service does).
ShopSession OpenShopSession(const std::optional<String>& store);

}  // namespace brindlewayProj::web
