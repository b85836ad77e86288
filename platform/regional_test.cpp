// Date text and date reading under US English and German, and where the locale comes from.
#include "platform/regional.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "platform/error.h"

namespace brindlewayProj::platform {
namespace {

constexpr double kPiDay1999 = 36233;  // 14 Mar 1999
constexpr double kFiveAfterTwo = 14.0 / 24 + 5.0 / 1440;

class RegionalTest : public ::testing::Test {
 protected:
  void SetUp() override { SetRegionalLocale("en_US"); }
  void TearDown() override { SetRegionalLocale(""); }
};

TEST_F(RegionalTest, DateTextByLocale) {
  struct Case {
    const char* locale;
    double serial;
    const char* text;
  };
  const Case cases[] = {
      {"en_US", kPiDay1999, "3/14/99"},
      {"en_US", kPiDay1999 + kFiveAfterTwo, "3/14/99 2:05:00 PM"},
      {"en_US", 0, "12:00:00 AM"},
      {"en_US", 1.0 / 86400, "12:00:01 AM"},
      {"en_US", 0.5, "12:00:00 PM"},
      {"en_US", -0.75, "6:00:00 PM"},  // no day part below day 0 either
      {"en_US", 1, "12/31/1899"},      // outside 1930-2029 the year is written out
      {"en_US", 47484, "1/1/2030"},
      {"en_US", -657434, "1/1/100"},
      {"en_US.UTF-8", kPiDay1999, "3/14/99"},
      {"C", kPiDay1999, "3/14/99"},
      {"de_DE", kPiDay1999, "14.03.99"},
      {"de_DE", kPiDay1999 + kFiveAfterTwo, "14.03.99 14:05:00"},
      {"de_DE.UTF-8@euro", 0.5, "12:00:00"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.locale) + " " + std::to_string(c.serial));
    SetRegionalLocale(c.locale);
    EXPECT_EQ(DateText(Date{c.serial}), c.text);
  }
}

TEST_F(RegionalTest, DateTextOutsideTheRangeOverflows) {
  for (double serial : {-657435.0, 2958466.0, double(NAN), double(INFINITY)}) {
    try {
      DateText(Date{serial});
      ADD_FAILURE() << serial;
    } catch (const Error& failure) {
      EXPECT_EQ(failure.Number(), errOverflow);
    }
  }
}

TEST_F(RegionalTest, ReadsDates) {
  struct Case {
    const char* locale;
    const char* text;
    double serial;
  };
  const Case cases[] = {
      {"en_US", "3/14/1999", kPiDay1999},
      {"en_US", "3/14/99", kPiDay1999},
      {"en_US", "  3/14/99  ", kPiDay1999},
      {"en_US", "03-14-99", kPiDay1999},
      {"en_US", "1999-03-14", kPiDay1999},
      {"en_US", "1999-03-14T14:05:00", kPiDay1999 + kFiveAfterTwo},
      {"en_US", "3/14/99 2:05:00 PM", kPiDay1999 + kFiveAfterTwo},
      {"en_US", "3/14/99 2:05pm", kPiDay1999 + kFiveAfterTwo},
      {"en_US", "3/14/99 14:05", kPiDay1999 + kFiveAfterTwo},
      {"en_US", "12:00:00 AM", 0},
      {"en_US", "12:00 PM", 0.5},
      {"en_US", "1/1/29", 47119},  // 2029
      {"en_US", "1/1/30", 10959},  // 1930
      {"de_DE", "14.03.1999", kPiDay1999},
      {"de_DE", "14.3.99 14:05", kPiDay1999 + kFiveAfterTwo},
      {"de_DE", "1999-03-14", kPiDay1999},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.locale) + " '" + c.text + "'");
    SetRegionalLocale(c.locale);
    const auto date = ParseDateText(c.text);
    ASSERT_TRUE(date);
    EXPECT_NEAR(date->serial, c.serial, 1e-9);
  }
}

TEST_F(RegionalTest, RefusesWhatIsNoDate) {
  const std::string refused[] = {
      "",
      "   ",
      "abc",
      "14/3/99",
      "2/30/99",
      "3/14",
      "3/14/99/1",
      "3/14/99 25:00",
      "3/14/99 13:00 PM",
      "3/14/99 2:05 XM",
      "3//99",
      "3/14/12345",
      "1999-03-14T",
      std::string("3/14/99\0", 8),
      "\xff\xfe/1/99",
      std::string(3 << 20, '1'),
  };
  for (const std::string& text : refused) {
    EXPECT_FALSE(ParseDateText(text)) << "'" << text.substr(0, 20) << "'";
  }
}

TEST_F(RegionalTest, DateTextReadsBack) {
  for (const char* locale : {"en_US", "de_DE", "fr_FR", "ja_JP"}) {
    SetRegionalLocale(locale);
    for (double serial : {kPiDay1999, kPiDay1999 + kFiveAfterTwo, 1.0, 2958465.5, 0.25}) {
      const auto date = ParseDateText(DateText(Date{serial}));
      ASSERT_TRUE(date) << locale << " " << DateText(Date{serial});
      EXPECT_NEAR(date->serial, serial, 1e-9) << locale;
    }
  }
}

TEST_F(RegionalTest, LocaleFromTheEnvironment) {
  SetRegionalLocale("");
  const char* saved = std::getenv("LC_ALL");
  const std::string keep = saved ? saved : "";
  setenv("LC_ALL", "de_DE.UTF-8", 1);
  EXPECT_EQ(DecimalSeparator(), ",");
  setenv("LC_ALL", "POSIX", 1);
  EXPECT_EQ(DecimalSeparator(), ".");
  if (saved) {
    setenv("LC_ALL", keep.c_str(), 1);
  } else {
    unsetenv("LC_ALL");
  }
}

}  // namespace
}  // namespace brindlewayProj::platform
