// The ICU formatters and symbols of the regional settings in force. ICU formatters are slow
// to build and not safe to share between threads, so each thread keeps one set per locale.
#pragma once

#include <unicode/datefmt.h>

#include <memory>

#include <brindleway/types.h>

namespace brindlewayProj::platform {

struct RegionalFormats {
  std::unique_ptr<icu::DateFormat> shortDate;
  std::unique_ptr<icu::DateFormat> shortDateFullYear;  // years outside 1930-2029
  std::unique_ptr<icu::DateFormat> longTime;
  // Short date, a blank and long time in one, for reading; the readers take two-digit years
  // as 1930-2029 and refuse fields out of range.
  std::unique_ptr<icu::DateFormat> dateTimeReader;
  String fieldOrder;  // day, month and year in the short date's order: "mdy", "dmy", "ymd"
  String decimalSeparator;
};

// The formats of the locale chosen by SetRegionalLocale, else by the environment. Both
// formatters work on civil fields in UTC with the Gregorian calendar for every year.
const RegionalFormats& CurrentRegionalFormats();

}  // namespace brindlewayProj::platform
