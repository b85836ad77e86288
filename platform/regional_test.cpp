// Date text and date reading under US English and German, and where the locale comes from.
#include "platform/regional.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include <brindleway/error.h>

namespace brindlewayProj::platform {
namespace {

constexpr double kPiDay = 36233;  // 14 Mar 1999
constexpr double kFiveAfterTwo = 14.0 / 24 + 5.0 / 1440;

class RegionalTest : public ::testing::Test {
 protected:
  void TearDown() override { SetRegionalLocale(""); }
};

TEST_F(RegionalTest, DateText) {
  const std::tuple<const char*, double, const char*> cases[] = {
      {"en_US", kPiDay, "3/14/99"},
      {"en_US", kPiDay + kFiveAfterTwo, "3/14/99 2:05:00 PM"},
      {"en_US", 1.0 / 86400, "12:00:01 AM"},
      {"en_US", -0.75, "6:00:00 PM"},  // no day part below day 0 either
      {"C", 1, "12/31/1899"},          // outside 1930-2029 the year is written out
      {"C", -657434, "1/1/100"},
      {"de_DE", kPiDay + kFiveAfterTwo, "14.03.99 14:05:00"},
      {"de_DE.UTF-8@euro", 0.5, "12:00:00"}};
  for (const auto& [locale, serial, text] : cases) {
    SetRegionalLocale(locale);
    EXPECT_EQ(DateText(Date{serial}), text) << locale << " " << serial;
  }
  EXPECT_THROW(DateText(Date{2958466}), Error);
  EXPECT_THROW(DateText(Date{NAN}), Error);
}

// Held settings stay as the first text found them until the last holder goes, nested or not.
TEST_F(RegionalTest, HeldSettingsLastAsLongAsTheirHolders) {
  SetRegionalLocale("de_DE");
  {
    RegionalSettingsHeld outer;
    EXPECT_EQ(DateText(Date{kPiDay}), "14.03.99");
    SetRegionalLocale("en_US");
    {
      RegionalSettingsHeld inner;
      EXPECT_EQ(DateText(Date{kPiDay}), "14.03.99");
    }
    EXPECT_EQ(DateText(Date{kPiDay}), "14.03.99");
  }
  EXPECT_EQ(DateText(Date{kPiDay}), "3/14/99");
}

TEST_F(RegionalTest, ReadsDates) {
  const std::tuple<const char*, const char*, double> cases[] = {
      {"en_US", "  03-14-99  ", kPiDay},
      {"en_US", "1999-03-14T14:05:00", kPiDay + kFiveAfterTwo},
      {"en_US", "3/14/1999 2:05pm", kPiDay + kFiveAfterTwo},
      {"en_US", "3/14/99 14:05", kPiDay + kFiveAfterTwo},
      {"en_US", "12:00 PM", 0.5},
      {"en_US", "1/1/29", 47119},  // 2029
      {"en_US", "1/1/30", 10959},  // 1930
      {"de_DE", "14.3.99 14:05", kPiDay + kFiveAfterTwo}};
  for (const auto& [locale, text, serial] : cases) {
    SetRegionalLocale(locale);
    const auto date = ParseDateText(text);
    ASSERT_TRUE(date) << locale << " " << text;
    EXPECT_NEAR(date->serial, serial, 1e-9) << text;
  }
  SetRegionalLocale("en_US");
  for (const std::string& text :
       {std::string("14/3/99"), std::string("2/30/99"), std::string("3/14"),
        std::string("3/14/99 13:00 PM"), std::string("3/14/99 25:00"), std::string("1/1/99999"),
        std::string("3/14/99\0", 8), std::string("\xff\xfe/1/99"), std::string(3 << 20, '1')}) {
    EXPECT_FALSE(ParseDateText(text)) << text.substr(0, 20);
  }
}

TEST_F(RegionalTest, DateTextReadsBackInEveryLocale) {
  for (const char* locale : {"en_US", "de_DE", "ja_JP", "ko_KR", "bg_BG", "da_DK", "ar_EG"}) {
    SetRegionalLocale(locale);
    for (double serial : {kPiDay + kFiveAfterTwo, 1.0, 2958465.5, 0.25}) {
      const auto date = ParseDateText(DateText(Date{serial}));
      ASSERT_TRUE(date) << locale << " " << DateText(Date{serial});
      EXPECT_NEAR(date->serial, serial, 1e-9) << locale;
    }
  }
}

TEST_F(RegionalTest, LocaleFromTheEnvironment) {
  const char* saved = std::getenv("LC_ALL");
  const std::string keep = saved ? saved : "";
  setenv("LC_ALL", "de_DE.UTF-8", 1);
  EXPECT_EQ(DecimalSeparator(), ",");
  setenv("LC_ALL", "POSIX", 1);
  EXPECT_EQ(DecimalSeparator(), ".");
  saved ? setenv("LC_ALL", keep.c_str(), 1) : unsetenv("LC_ALL");
}

}  // namespace
}  // namespace brindlewayProj::platform
