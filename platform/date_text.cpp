// Dates as text: the regional short date and long time, with plain blanks.
#include <cmath>

#include "platform/calendar.h"
#include <brindleway/error.h>
#include "platform/regional.h"
#include "platform/regional_formats.h"

namespace brindlewayProj::platform {
namespace {

// ICU puts narrow and non-breaking spaces into times ("2:05 PM"); the platform uses blanks.
String PlainText(icu::UnicodeString text) {
  text.findAndReplace(icu::UnicodeString(char16_t{0x202F}), u" ");
  text.findAndReplace(icu::UnicodeString(char16_t{0x00A0}), u" ");
  String out;
  return text.toUTF8String(out);
}

constexpr double kUnixEpochDay = 25569;  // 1 Jan 1970 as a day number
constexpr double kMillisPerDay = 86400000;

}  // namespace

String DateText(Date value) {
  const auto civil = ToCivil(value);
  if (!civil) Raise(errOverflow);
  const RegionalFormats& formats = CurrentRegionalFormats();
  CivilTime day = *civil;
  day.hour = day.minute = day.second = 0;
  const double dayNumber = FromCivil(day)->serial;
  const double secondOfDay = civil->hour * 3600 + civil->minute * 60 + civil->second;
  const UDate instant = (dayNumber - kUnixEpochDay) * kMillisPerDay + secondOfDay * 1000;

  icu::UnicodeString text;
  if (dayNumber == 0) return PlainText(formats.longTime->format(instant, text));
  const bool twoDigitYear = civil->year >= 1930 && civil->year <= 2029;
  (twoDigitYear ? formats.shortDate : formats.shortDateFullYear)->format(instant, text);
  if (secondOfDay != 0) {
    text.append(u' ');
    formats.longTime->format(instant, text);
  }
  return PlainText(text);
}

}  // namespace brindlewayProj::platform
