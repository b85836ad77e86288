// Dates as text: the regional short date and long time, with plain blanks.
#include <cmath>
#include <unordered_map>

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

String FormattedText(Date value, const RegionalFormats& formats) {
  const auto civil = ToCivil(value);
  if (!civil) Raise(errOverflow);
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

}  // namespace

// Formatting through ICU is the dear part of listing orders, and a shop lists the same days
// again and again: each thread keeps the texts it made for one set of formats.
String DateText(Date value) {
  const RegionalFormats& formats = CurrentRegionalFormats();
  thread_local const RegionalFormats* madeWith = nullptr;
  thread_local std::unordered_map<double, String> made;
  if (madeWith != &formats || made.size() >= 4096) {
    made.clear();
    madeWith = &formats;
  }
  if (auto found = made.find(value.serial); found != made.end()) return found->second;
  String text = FormattedText(value, formats);
  made.emplace(value.serial, text);
  return text;
}

}  // namespace brindlewayProj::platform
