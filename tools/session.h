// The object the call and demo commands work on: created through the registry, and connected
// to a given store when one is named.
#pragma once

#include <memory>
#include <optional>

#include <brindleway/dispatch.h>
#include "tools/commands.h"

namespace brindlewayProj::cli {

// Creates brindlewayProj.brindleway through the registry. Without `store` the object keeps the
// connection it made at creation (brindlewayProj.ini, or brindleway.mdb beside the server).
// With `store` it is connected to that file by DbConnect; the message box of a failed
// connection to the default store at creation is then not shown, as that store is not used.
// A failure raises platform::Error: 429 when the class is not registered (saying how to
// register it) or the object cannot be created; the DbConnect message when the store cannot
// be opened. With -v it tells which registry, server file and store it uses.
std::shared_ptr<server::Dispatch> OpenSession(const std::optional<String>& store,
                                              const Program& program);

}  // namespace brindlewayProj::cli
