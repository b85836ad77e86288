// Day numbers of the platform's Date and civil (proleptic Gregorian) dates, both ways.
#include "platform/calendar.h"

#include <cmath>

namespace brindlewayProj::platform {
namespace {

constexpr long long kSecondsPerDay = 86400;

// Days since 1 Jan 1970 of a proleptic Gregorian date (after H. Hinnant's civil algorithms).
constexpr long long DaysFromCivil(long long year, int month, int day) {
  year -= month <= 2;
  const long long era = (year >= 0 ? year : year - 399) / 400;
  const long long yearOfEra = year - era * 400;
  const long long dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  const long long dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + dayOfEra - 719468;
}

void CivilFromDays(long long days, CivilTime& time) {
  days += 719468;
  const long long era = (days >= 0 ? days : days - 146096) / 146097;
  const long long dayOfEra = days - era * 146097;
  const long long yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const long long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const long long shiftedMonth = (5 * dayOfYear + 2) / 153;
  time.day = static_cast<int>(dayOfYear - (153 * shiftedMonth + 2) / 5 + 1);
  time.month = static_cast<int>(shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9);
  time.year = static_cast<int>(yearOfEra + era * 400 + (time.month <= 2));
}

// Day 0 of the platform, 30 Dec 1899, counted from 1 Jan 1970.
constexpr long long kDayZero = DaysFromCivil(1899, 12, 30);

int DaysInMonth(int year, int month) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[month - 1];
}

}  // namespace

std::optional<CivilTime> ToCivil(Date value) {
  if (!(value.serial >= kMinDateSerial && value.serial <= kMaxDateSerial)) return std::nullopt;
  // The whole part counts days; the fraction is the time of day, also below day 0.
  long long days = static_cast<long long>(std::trunc(value.serial));
  long long seconds = std::llround(std::fabs(value.serial - static_cast<double>(days)) *
                                   static_cast<double>(kSecondsPerDay));
  if (seconds >= kSecondsPerDay) {
    days += 1;
    seconds -= kSecondsPerDay;
  }
  CivilTime time;
  CivilFromDays(days + kDayZero, time);
  if (time.year > 9999) return std::nullopt;
  time.hour = static_cast<int>(seconds / 3600);
  time.minute = static_cast<int>(seconds / 60 % 60);
  time.second = static_cast<int>(seconds % 60);
  return time;
}

std::optional<Date> FromCivil(const CivilTime& time) {
  if (time.year < 100 || time.year > 9999 || time.month < 1 || time.month > 12 || time.day < 1 ||
      time.day > DaysInMonth(time.year, time.month) || time.hour < 0 || time.hour > 23 ||
      time.minute < 0 || time.minute > 59 || time.second < 0 || time.second > 59) {
    return std::nullopt;
  }
  const double days =
      static_cast<double>(DaysFromCivil(time.year, time.month, time.day) - kDayZero);
  const double fraction =
      (time.hour * 3600 + time.minute * 60 + time.second) / static_cast<double>(kSecondsPerDay);
  return Date{days >= 0 ? days + fraction : days - fraction};
}

}  // namespace brindlewayProj::platform
