// Test-only: an object with a default value, standing in for a Field where the store is not
// the subject of the test.
#pragma once

#include <brindleway/variant.h>

namespace brindlewayProj::testing {

class FieldLike : public Object {
 public:
  explicit FieldLike(Variant value) : value_(std::move(value)) {}
  bool HasDefaultValue() const override { return true; }
  Variant DefaultValue() const override { return value_; }

 private:
  Variant value_;
};

inline Variant FieldHolding(Variant value) {
  return Variant(std::make_shared<FieldLike>(std::move(value)));
}

}  // namespace brindlewayProj::testing
