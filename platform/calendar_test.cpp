// Day numbers and civil dates: known days both ways, the range ends, and refused fields.
#include "platform/calendar.h"

#include <gtest/gtest.h>

#include <cmath>

namespace brindlewayProj::platform {
namespace {

TEST(CalendarTest, KnownDaysBothWays) {
  struct Case {
    double serial;
    CivilTime civil;
  };
  const Case cases[] = {
      {0, {1899, 12, 30, 0, 0, 0}},
      {36233, {1999, 3, 14, 0, 0, 0}},
      {36233 + 14.0 / 24 + 5.0 / 1440, {1999, 3, 14, 14, 5, 0}},
      {60, {1900, 2, 28, 0, 0, 0}},
      {61, {1900, 3, 1, 0, 0, 0}},  // 1900 is no leap year
      {-1.25, {1899, 12, 29, 6, 0, 0}},
      {-657434, {100, 1, 1, 0, 0, 0}},
      {2958465, {9999, 12, 31, 0, 0, 0}},
      {2958465 + 86399.0 / 86400, {9999, 12, 31, 23, 59, 59}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.serial);
    const auto civil = ToCivil(Date{c.serial});
    ASSERT_TRUE(civil);
    EXPECT_EQ(civil->year, c.civil.year);
    EXPECT_EQ(civil->month, c.civil.month);
    EXPECT_EQ(civil->day, c.civil.day);
    EXPECT_EQ(civil->hour * 3600 + civil->minute * 60 + civil->second,
              c.civil.hour * 3600 + c.civil.minute * 60 + c.civil.second);
    const auto back = FromCivil(c.civil);
    ASSERT_TRUE(back);
    EXPECT_NEAR(back->serial, c.serial, 1e-9);
  }
}

TEST(CalendarTest, RoundsToTheSecondAcrossMidnight) {
  const auto civil = ToCivil(Date{36233 - 1e-9});
  ASSERT_TRUE(civil);
  EXPECT_EQ(civil->day, 14);
  EXPECT_EQ(civil->hour, 0);
}

TEST(CalendarTest, RefusesWhatIsNoDate) {
  for (double serial : {-657435.0, 2958466.0, double(NAN), double(INFINITY), -double(INFINITY)}) {
    EXPECT_FALSE(ToCivil(Date{serial})) << serial;
  }
  const CivilTime refused[] = {
      {99, 12, 31},  {10000, 1, 1},    {1999, 0, 1},        {1999, 13, 1},          {1999, 2, 29},
      {2000, 4, 31}, {1999, 1, 1, 24}, {1999, 1, 1, 0, 60}, {1999, 1, 1, 0, 0, -1},
  };
  for (const CivilTime& time : refused) {
    EXPECT_FALSE(FromCivil(time)) << time.year << "-" << time.month << "-" << time.day;
  }
  EXPECT_TRUE(FromCivil({2000, 2, 29}));
}

}  // namespace
}  // namespace brindlewayProj::platform
