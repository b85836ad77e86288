// HasValue, the test whether a value was really given, and the blank trimming it uses.
#include "dataaccess/resolved_value.h"
#include <brindleway/variant.h>

namespace brindlewayProj {

String Trim(const String& text) {
  const size_t begin = text.find_first_not_of(' ');
  if (begin == String::npos) return String();
  return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

bool IsGivenValue(const Variant& plain) {
  if (IsMissing(plain)) return false;
  switch (plain.vt()) {
    case vbObject:
      return plain.AsObject() != nullptr;
    case vbNull:
    case vbEmpty:
      return false;
    case vbString:
      return plain.AsString().find_first_not_of(' ') != String::npos;
    case vbDate:
      return plain.AsDate().serial != 0;
    default:
      return true;
  }
}

bool HasValue(Variant& value) {
  const Variant plain = ResolvedValue(value);
  // Through a reference the caller's variable is trimmed; a Variant holding a Field takes the
  // trimmed text itself, and the stored field stays as it is.
  if (plain.vt() == vbString) value.Assign(Variant(Trim(plain.AsString())));
  return IsGivenValue(plain);
}

}  // namespace brindlewayProj
