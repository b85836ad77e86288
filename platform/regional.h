// Regional settings: dates and numbers as text in the user's locale, and reading them back.
// The locale is chosen with SetRegionalLocale (<brindleway/hooks.h>).
#pragma once

#include <optional>

#include <brindleway/hooks.h>

namespace brindlewayProj::platform {

// The platform's text of a date: the short date, then a blank and the long time when the
// time of day is not midnight; a value without a day part gives the time alone. Blanks are
// plain U+0020. Raises 6 "Overflow" outside the platform's date range.
String DateText(Date value);

// Reads a date from text: the regional short date with 2- or 4-digit years (00-29 are
// 2000-2029, 30-99 are 1930-1999), ISO yyyy-mm-dd, each with an optional time, or a time
// alone. Empty when the text is no date.
std::optional<Date> ParseDateText(const String& text);

// The decimal separator of the regional settings ("." in US English).
String DecimalSeparator();

// While one lives, this thread's texts follow the regional settings as the first of them
// found them, and each later text spares looking them up again: a method's dates and numbers
// then all come from one locale.
class RegionalSettingsHeld {
 public:
  RegionalSettingsHeld();
  ~RegionalSettingsHeld();
  RegionalSettingsHeld(const RegionalSettingsHeld&) = delete;
  RegionalSettingsHeld& operator=(const RegionalSettingsHeld&) = delete;
};

}  // namespace brindlewayProj::platform
