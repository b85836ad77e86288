// Placing late-bound arguments on a method's parameters and calling it.
#include "server/invoke.h"

#include <optional>
#include <vector>

namespace brindlewayProj::server {
namespace {

[[noreturn]] void RaiseCallError(Long number) {
  switch (number) {
    case errNamedArgumentNotFound:
      platform::Raise(number, "Named argument not found");
    case errArgumentNotOptional:
      platform::Raise(number, "Argument not optional");
    case errWrongArgumentCount:
      platform::Raise(number, "Wrong number of arguments or invalid property assignment");
    default:
      platform::Raise(number);
  }
}

// For each parameter, the index of the argument placed on it.
std::vector<std::optional<std::size_t>> PlaceArguments(const MethodInfo& method,
                                                       std::span<const Argument> arguments) {
  std::vector<std::optional<std::size_t>> placed(method.params.size());
  std::size_t nextPosition = 0;
  bool namedSeen = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    std::size_t target;
    if (arguments[i].name.empty()) {
      // A positional argument after a named one has no place.
      if (namedSeen) platform::Raise(platform::errInvalidProcedureCall);
      if (nextPosition >= placed.size()) RaiseCallError(errWrongArgumentCount);
      target = nextPosition++;
    } else {
      namedSeen = true;
      int index = FindParam(method, arguments[i].name);
      if (index < 0) RaiseCallError(errNamedArgumentNotFound);
      target = static_cast<std::size_t>(index);
    }
    if (placed[target]) platform::Raise(platform::errInvalidProcedureCall);
    placed[target] = i;
  }
  return placed;
}

}  // namespace

Variant Dispatch::Invoke(const String& name, std::span<Argument> arguments) {
  return Invoke(GetIdOfName(name), arguments);
}

Variant InvokeMethod(brindleway& object, const MethodInfo& method, std::span<Argument> arguments) {
  std::vector<std::optional<std::size_t>> placed = PlaceArguments(method, arguments);
  std::vector<Variant> values(method.params.size());
  for (std::size_t p = 0; p < values.size(); ++p) {
    const ParamInfo& param = method.params[p];
    // The missing marker given explicitly counts as left out.
    if (placed[p] && !IsMissing(arguments[*placed[p]].value)) {
      values[p] = arguments[*placed[p]].value;
    } else if (param.optional) {
      values[p] = LeftOutValue(param);
    } else {
      RaiseCallError(errArgumentNotOptional);
    }
  }
  auto writeBack = [&] {
    for (std::size_t p = 0; p < values.size(); ++p) {
      if (placed[p]) arguments[*placed[p]].value = values[p];
    }
  };
  try {
    Variant result = method.invoke(object, values);
    writeBack();
    return result;
  } catch (...) {
    writeBack();
    throw;
  }
}

}  // namespace brindlewayProj::server
