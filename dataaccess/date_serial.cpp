// DateSerial and TimeSerial: dates and times from their parts, months and days rolling over
// as the platform lets them ("month 13" is January of the next year).
#include <cmath>

#include <brindleway/variant.h>
#include "platform/calendar.h"

namespace brindlewayProj {

Date DateSerial(Integer year, Integer month, Integer day) {
  int fullYear = year;
  if (year >= 0 && year <= 29) fullYear += 2000;
  if (year >= 30 && year <= 99) fullYear += 1900;
  // Months beyond December or before January move the year.
  const int monthsFromJanuary = month - 1;
  const int yearShift =
      monthsFromJanuary >= 0 ? monthsFromJanuary / 12 : -((11 - monthsFromJanuary) / 12);
  platform::CivilTime firstOfMonth;
  firstOfMonth.year = fullYear + yearShift;
  firstOfMonth.month = monthsFromJanuary - yearShift * 12 + 1;
  firstOfMonth.day = 1;
  const auto first = platform::FromCivil(firstOfMonth);
  if (!first) platform::Raise(platform::errInvalidProcedureCall);
  const double serial = first->serial + (day - 1);
  if (serial < platform::kMinDateSerial || serial > platform::kMaxDateSerial) {
    platform::Raise(platform::errInvalidProcedureCall);
  }
  return Date{serial};
}

Date TimeSerial(Integer hour, Integer minute, Integer second) {
  const long long total = hour * 3600LL + minute * 60LL + second;
  // Whole days count as usual; the time of day stays a positive fraction below day 0.
  const long long days = total >= 0 ? total / 86400 : -((86399 - total) / 86400);
  const double fraction = static_cast<double>(total - days * 86400) / 86400;
  return Date{days >= 0 ? days + fraction : days - fraction};
}

}  // namespace brindlewayProj
