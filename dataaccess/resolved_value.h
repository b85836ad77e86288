// The value that tests and conversions see in a Variant: read out of a reference and, for an
// object with a default value (a Field), that value.
#pragma once

#include <brindleway/variant.h>

namespace brindlewayProj {

// A plain Variant: never a reference, never an object that has a default value. Nothing
// and objects without a default value come back as they are.
Variant ResolvedValue(const Variant& value);

}  // namespace brindlewayProj
