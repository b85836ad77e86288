// Stored values and Variants, both ways, by the kind of the column's declared type. Dates are
// stored as text `YYYY-MM-DD HH:MM:SS`.
#pragma once

#include <brindleway/variant.h>
#include "store/backend.h"

namespace brindlewayProj::dao::internal {

// The Variant of a stored value: Null for NULL, else the declared kind (Long, Integer, Double,
// Date, String); a column without declared kind follows the value's own class.
Variant ToVariant(const store::SqlValue& value, store::DeclaredKind kind);

// The stored value of a Variant written into a column: converted as CLng, CInt, CDbl, CDate or
// CStr by the declared kind (failures raise as those do); Null and Empty store NULL.
store::SqlValue FromVariant(const Variant& value, store::DeclaredKind kind);

}  // namespace brindlewayProj::dao::internal
