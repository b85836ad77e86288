// How the command-line program shows values: scalars as their text, a Collection and a
// Recordset as their rows.
#pragma once

#include <vector>

#include <brindleway/variant.h>

namespace brindlewayProj::cli {

// One line for a scalar ("Null", "Empty", "Nothing" for those); for a Collection a count line
// and one line per entry; for a Recordset a line of field names and one line per row (the
// recordset is walked from its first row).
std::vector<String> ValueLines(const Variant& value);

}  // namespace brindlewayProj::cli
