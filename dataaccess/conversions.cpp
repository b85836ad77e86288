// The platform's conversions of a Variant (CStr, CLng, CInt, CDbl, CDate, CBool) and the
// text form of the join operator.
#include <cmath>
#include <limits>

#include "dataaccess/number_text.h"
#include "dataaccess/resolved_value.h"
#include <brindleway/variant.h>
#include "platform/calendar.h"
#include "platform/regional.h"

namespace brindlewayProj {
namespace {

using platform::Raise;

// An object left after resolving has no default value: Nothing raises 91, any other 438.
[[noreturn]] void RaiseForObject(const Variant& object) {
  Deref(object.AsObject()).DefaultValue();
  Raise(platform::errObjectDoesNotSupport);
}

// The number a value stands for, before any rounding or range test.
Double NumberOf(const Variant& value) {
  const Variant plain = ResolvedValue(value);
  switch (plain.vt()) {
    case vbEmpty:
      return 0;
    case vbNull:
      Raise(platform::errInvalidUseOfNull);
    case vbInteger:
      return plain.AsInteger();
    case vbLong:
      return plain.AsLong();
    case vbDouble:
      return plain.AsDouble();
    case vbDate:
      return plain.AsDate().serial;
    case vbBoolean:
      return plain.AsBoolean() ? -1 : 0;
    case vbString: {
      const auto number = ParseNumberText(plain.AsString());
      if (!number) Raise(platform::errTypeMismatch);
      return *number;
    }
    case vbObject:
      RaiseForObject(plain);
    default:
      Raise(platform::errTypeMismatch);  // Error values, the missing marker among them
  }
}

// Halves go to the even neighbour; NaN, infinities and values outside [low, high] overflow.
Double WholeNumber(Double number, Double low, Double high) {
  if (!std::isfinite(number)) Raise(platform::errOverflow);
  Double whole = std::round(number);
  if (std::fabs(number - std::trunc(number)) == 0.5) whole = 2 * std::round(number / 2);
  if (whole < low || whole > high) Raise(platform::errOverflow);
  return whole;
}

bool EqualsIgnoringCase(const String& text, const char* word) {
  size_t i = 0;
  for (; i < text.size() && word[i] != '\0'; ++i) {
    if ((text[i] | 0x20) != word[i]) return false;
  }
  return i == text.size() && word[i] == '\0';
}

}  // namespace

String CStr(const Variant& value) {
  const Variant plain = ResolvedValue(value);
  switch (plain.vt()) {
    case vbEmpty:
      return String();
    case vbNull:
      Raise(platform::errInvalidUseOfNull);
    case vbInteger:
      return std::to_string(plain.AsInteger());
    case vbLong:
      return std::to_string(plain.AsLong());
    case vbDouble:
      return NumberText(plain.AsDouble());
    case vbDate:
      return platform::DateText(plain.AsDate());
    case vbString:
      return plain.AsString();
    case vbBoolean:
      return plain.AsBoolean() ? "True" : "False";
    case vbError: {
      // The missing marker reads as the runtime's "argument not found", 448.
      const Long code = plain.ErrorCode();
      return "Error " + std::to_string(code == kMissingCode ? 448 : code);
    }
    default:
      RaiseForObject(plain);
  }
}

Long CLng(const Variant& value) {
  return static_cast<Long>(WholeNumber(NumberOf(value), std::numeric_limits<Long>::min(),
                                       std::numeric_limits<Long>::max()));
}

Integer CInt(const Variant& value) {
  return static_cast<Integer>(WholeNumber(NumberOf(value), std::numeric_limits<Integer>::min(),
                                          std::numeric_limits<Integer>::max()));
}

Double CDbl(const Variant& value) { return NumberOf(value); }

Date CDate(const Variant& value) {
  const Variant plain = ResolvedValue(value);
  if (plain.vt() == vbDate) return plain.AsDate();
  if (plain.vt() == vbString) {
    const auto date = platform::ParseDateText(plain.AsString());
    if (!date) Raise(platform::errTypeMismatch);
    return *date;
  }
  const Double serial = NumberOf(plain);
  if (!(serial >= platform::kMinDateSerial && serial <= platform::kMaxDateSerial)) {
    Raise(platform::errOverflow);
  }
  return Date{serial};
}

bool CBool(const Variant& value) {
  const Variant plain = ResolvedValue(value);
  if (plain.vt() == vbString) {
    if (EqualsIgnoringCase(plain.AsString(), "true")) return true;
    if (EqualsIgnoringCase(plain.AsString(), "false")) return false;
  }
  const Double number = NumberOf(plain);
  if (std::isnan(number)) Raise(platform::errTypeMismatch);
  return number != 0;
}

String JoinText(const Variant& value) {
  const Variant plain = ResolvedValue(value);
  switch (plain.vt()) {
    case vbEmpty:
    case vbNull:
      return String();
    case vbError:
      Raise(platform::errTypeMismatch);
    default:
      return CStr(plain);
  }
}

}  // namespace brindlewayProj
