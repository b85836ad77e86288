// Late-bound calls: an object reached through method names and dispatch ids, called with
// positional and named Variant arguments, as the platform's scripting clients call it.
#pragma once

#include <span>

#include "component/type_library.h"
#include "dataaccess/object.h"

namespace brindlewayProj::server {

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

class Dispatch : public Object {
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

// Places `arguments` on the method's parameters (positional first, then named), fills in
// what was left out (the default, or the missing marker for an optional Variant), calls the
// method on `object`, and writes every argument back.
Variant InvokeMethod(brindleway& object, const MethodInfo& method, std::span<Argument> arguments);

}  // namespace brindlewayProj::server
