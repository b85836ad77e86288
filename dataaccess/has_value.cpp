// HasValue, the test whether a value was really given, and the blank trimming it uses.
#include "dataaccess/resolved_value.h"
#include <brindleway/variant.h>

namespace brindlewayProj {

String Trim(const String& text) {
  const size_t begin = text.find_first_not_of(' ');
  if (begin == String::npos) return String();
  return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

bool HasValue(Variant& value) {
  const Variant plain = ResolvedValue(value);
  if (IsMissing(plain)) return false;
  switch (plain.vt()) {
    case vbObject:
      return plain.AsObject() != nullptr;
    case vbNull:
    case vbEmpty:
      return false;
    case vbString: {
      // Through a reference the caller's variable is trimmed; a Variant holding a Field
      // takes the trimmed text itself, and the stored field stays as it is.
      String trimmed = Trim(plain.AsString());
      const bool given = !trimmed.empty();
      value.Assign(Variant(std::move(trimmed)));
      return given;
    }
    case vbDate:
      return plain.AsDate().serial != 0;
    default:
      return true;
  }
}

}  // namespace brindlewayProj
