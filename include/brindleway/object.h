// The base of every object a Variant can hold, and the one checked way to use a reference.
#pragma once

#include <memory>

#include <brindleway/error.h>
#include <brindleway/export.h>

namespace brindlewayProj {

class Variant;

// Collections and the data-access objects derive from Object. An object with a default
// value (a Field and its Value) answers it, so that tests and conversions look through it.
class BRINDLEWAY_API Object {
 public:
  virtual ~Object() = default;
  virtual bool HasDefaultValue() const { return false; }
  // Raises 438 for an object without a default value.
  virtual Variant DefaultValue() const;
};

// Uses an object reference: Nothing raises 91 instead of crashing.
template <class T>
T& Deref(const std::shared_ptr<T>& reference) {
  if (!reference) platform::Raise(platform::errObjectNotSet);
  return *reference;
}

}  // namespace brindlewayProj
