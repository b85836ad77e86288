// The late-bound surface: an object reached through method names and dispatch ids, called
// with positional and named Variant arguments as the platform's scripting clients call it,
// and CreateObject, which makes one by its programmatic id through the registry.
#pragma once

#include <memory>
#include <span>

#include <brindleway/export.h>
#include <brindleway/object.h>
#include <brindleway/variant.h>

namespace brindlewayProj {

namespace server {

// The platform's errors for calls that do not fit the method.
inline constexpr Long errNamedArgumentNotFound = 448;
inline constexpr Long errArgumentNotOptional = 449;
inline constexpr Long errWrongArgumentCount = 450;

// One argument of a late-bound call: positional when `name` is empty, otherwise named
// (without regard to case). Every argument is passed by reference: a Variant made by
// Variant::ByRef is written through to its variable, and a plain Variant is replaced by the
// parameter's value after the call.
struct Argument {
  String name;
  Variant value;
};

// An object behind its late-bound interface. The caller owns it through the shared_ptr; it is
// used on the thread that created it.
class BRINDLEWAY_API Dispatch : public Object {
 public:
  // The dispatch id of the named method, without regard to case; an unknown name raises 438.
  virtual Long GetIdOfName(const String& name) const = 0;
  // Calls the method `dispId` and answers its result. An unknown id raises 438; arguments
  // that do not fit raise 448, 449, 450, 5 or a conversion's error (13, 6, 94) before the
  // method runs; a failure the method lets out is raised with its number and description,
  // after the arguments were written back.
  virtual Variant Invoke(Long dispId, std::span<Argument> arguments) = 0;
  // GetIdOfName, then Invoke.
  Variant Invoke(const String& name, std::span<Argument> arguments);
};

}  // namespace server

namespace client {

// The error number of an object that cannot be created.
inline constexpr Long errCannotCreateObject = 429;

// Finds the server file registered for `progId` (such as "brindlewayProj.brindleway", in any
// case) in the registry file, loads it, asks DllGetClassObject for the class factory and
// creates one object, which the caller owns. The file stays loaded for the rest of the
// process. An id that is not registered, a file that cannot be loaded or that lacks the entry
// point, or a factory that refuses, raises 429 with a description that says which; a failure
// of the object's own creation is raised as it is.
std::shared_ptr<server::Dispatch> CreateObject(const String& progId);

}  // namespace client
}  // namespace brindlewayProj
