// The platform's scalar types as the component's C++ surface spells them.
#pragma once

#include <cstdint>
#include <string>

namespace brindlewayProj {

using Integer = std::int16_t;
using Long = std::int32_t;
using Byte = std::uint8_t;
using Double = double;
using String = std::string;  // UTF-8

// A point in time as the platform keeps it: the day number, 0 being 30 Dec 1899 00:00,
// with the time of day as its fraction.
struct Date {
  double serial = 0;
  friend bool operator==(Date, Date) = default;
  friend bool operator<(Date a, Date b) { return a.serial < b.serial; }
};

}  // namespace brindlewayProj
