// Day numbers of the platform's Date and the civil calendar, both ways.
#pragma once

#include <optional>

#include <brindleway/types.h>

namespace brindlewayProj::platform {

struct CivilTime {
  int year = 1899, month = 12, day = 30;
  int hour = 0, minute = 0, second = 0;
};

// The earliest and latest day numbers the platform accepts (1 Jan 100 and 31 Dec 9999).
inline constexpr double kMinDateSerial = -657434.0;
inline constexpr double kMaxDateSerial = 2958465.99999;

// The civil time of a day number, to the nearest second; empty outside the date range or
// for NaN. Negative day numbers keep their time of day as a positive fraction, as the
// platform counts them (-1.25 is 29 Dec 1899 06:00).
std::optional<CivilTime> ToCivil(Date value);

// The day number of a civil time; empty when a field is out of its range.
std::optional<Date> FromCivil(const CivilTime& time);

}  // namespace brindlewayProj::platform
