// The value that tests and conversions see in a Variant: read out of a reference and, for an
// object with a default value (a Field), that value.
#pragma once

#include <brindleway/variant.h>

namespace brindlewayProj {

// A plain Variant: never a reference, never an object that has a default value. Nothing
// and objects without a default value come back as they are.
Variant ResolvedValue(const Variant& value);

// Whether a plain value counts as given, as HasValue tells it, without HasValue's trimming:
// not Missing, Null, Empty, Nothing, blank text or the zero date.
bool IsGivenValue(const Variant& plain);

}  // namespace brindlewayProj
