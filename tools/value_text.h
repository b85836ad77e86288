// How the brindleway program shows values as text: scalars on one line each, a Collection and
// a Recordset as their rows. Texts are quoted with JSON's escapes, dates are ISO 8601, so that
// every value stays on its line and reads the same in every locale.
#pragma once

#include <vector>

#include <brindleway/variant.h>

namespace brindlewayProj::cli {

// "2026-11-22" at midnight, else "2026-11-22T14:05:00". A day number outside the platform's
// range (1 Jan 100 to 31 Dec 9999) gives its number instead.
String IsoDate(Date value);

// `text` in double quotes, with the escapes of a JSON string (\" \\ \n \t \u0001 ...); bytes
// that are no UTF-8 become U+FFFD.
String Quoted(const String& text);

// `text` as it is, but with line breaks and other control characters written as in a JSON
// string, so that it stays on one line (for ReturnMsg and error descriptions).
String OneLine(const String& text);

// One line for a scalar (a String quoted, a Date in ISO 8601, the words Null, Empty, Missing
// and Nothing for those); for a Collection a count line and one line per entry; for a
// Recordset a count line, a line of field names and one line per row (the recordset is walked
// from its first row).
std::vector<String> ValueLines(const Variant& value);

}  // namespace brindlewayProj::cli
