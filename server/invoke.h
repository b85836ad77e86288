// Placing late-bound arguments on a method's typed parameters and calling it on the object.
#pragma once

#include <span>

#include <brindleway/dispatch.h>

#include "server/type_library.h"

namespace brindlewayProj::server {

// Places `arguments` on the method's parameters (positional first, then named), fills in
// what was left out (the default, or the missing marker for an optional Variant), calls the
// method on `object`, and writes every argument back.
Variant InvokeMethod(brindleway& object, const MethodInfo& method, std::span<Argument> arguments);

}  // namespace brindlewayProj::server
