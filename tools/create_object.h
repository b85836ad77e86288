// The client side of the server: creating an object by its programmatic id, as the
// platform's CreateObject does, through the registry and the server file's entry points.
#pragma once

#include <memory>

#include "component/dispatch.h"

namespace brindlewayProj::client {

// The error number of an object that cannot be created.
inline constexpr Long errCannotCreateObject = 429;

// Finds the server file registered for `progId` (such as "brindlewayProj.brindleway", in any
// case) in the registry file, loads it, asks DllGetClassObject for the class factory and
// creates one object. The file stays loaded for the rest of the process. An id that is not
// registered, a file that cannot be loaded or that lacks the entry point, or a factory that
// refuses, raises 429 with a description that says which; a failure of the object's own
// creation is raised as it is.
std::shared_ptr<server::Dispatch> CreateObject(const String& progId);

}  // namespace brindlewayProj::client
