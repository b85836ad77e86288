// The conversions, one table each: what a value converts to, or the error it raises.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include <brindleway/collection.h>
#include "dataaccess/field_like_test.h"
#include "platform/regional.h"

namespace brindlewayProj {
namespace {

using testing::FieldHolding;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The converted value as text, or "error N".
template <class Convert>
std::string Outcome(Convert convert, const Variant& value) {
  std::ostringstream out;
  try {
    out << convert(value);
  } catch (const platform::Error& failure) {
    out << "error " << failure.Number();
  }
  return out.str();
}

// Every one of `values` converts to `expected`.
template <class Convert>
void Expect(Convert convert, const std::string& expected, std::initializer_list<Variant> values) {
  for (const Variant& value : values) {
    EXPECT_EQ(Outcome(convert, value), expected)
        << "kind " << value.vt() << " " << Outcome(JoinText, value);
  }
}

double Serial(const Variant& value) { return CDate(value).serial; }

class ConversionsTest : public ::testing::Test {
 protected:
  void SetUp() override { platform::SetRegionalLocale("en_US"); }
  void TearDown() override { platform::SetRegionalLocale(""); }
};

// Each line: every value converts to the text, or raises the error.
TEST_F(ConversionsTest, ConvertOrRaiseThePlatformsErrors) {
  Expect(CLng, "2", {2.5, 1.5, 2.49, "  2 ", "\t+0.2e1", Date{2.5}, FieldHolding("2")});
  Expect(CLng, "-1", {true, -0.5000001, "-1."});
  Expect(CLng, "0", {Variant(), false, -0.5});
  Expect(CLng, "2147483647", {2147483647.49});
  Expect(CLng, "error 6", {2147483647.5, -2147483649.0, "1e300", kNaN, -kInfinity});
  Expect(CLng, "error 94", {Variant::Null(), FieldHolding(Variant::Null())});
  Expect(CLng, "error 13", {"abc", "", "1,5", "1e", ".", Variant::Missing(), Variant::Error(5)});
  Expect(CLng, "error 91", {nullptr});
  Expect(CLng, "error 438", {std::make_shared<Collection>()});

  Expect(CInt, "4", {3.5, Long{4}, " 4 "});
  Expect(CInt, "-32768", {-32768.5, Integer{-32768}});
  Expect(CInt, "error 6", {Long{32768}, 32767.5, Date{36233}});
  Expect(CDbl, "0.25", {Date{0.25}, " 0.25 ", "2.5e-1", FieldHolding(0.25)});
  Expect(CDbl, "error 13", {"2.5.1", Variant::Missing()});
  Expect(CBool, "1", {0.1, "TRUE", " -1 ", Long{2}});
  Expect(CBool, "0", {Variant(), "false", Date{0}, Integer{0}});
  Expect(CBool, "error 13", {"yes", kNaN});

  Expect(Serial, "36233", {"3/14/1999", "3/14/99", "1999-03-14", Long{36233}, Date{36233}});
  Expect(Serial, "36233.5", {"3/14/99 12:00 PM", 36233.5, FieldHolding(Date{36233.5})});
  Expect(Serial, "-1", {true, -1.0});
  Expect(Serial, "0", {Variant()});
  Expect(Serial, "error 6", {3e6, -657435.0, kNaN});
  Expect(Serial, "error 94", {Variant::Null()});
  Expect(Serial, "error 13", {"soon", "2/30/99", "36233", Variant::Missing()});

  Expect(CStr, "", {Variant(), ""});
  Expect(CStr, "-5", {Integer{-5}, Long{-5}, -5.0, FieldHolding(-5.0)});
  Expect(CStr, "0", {-0.0});
  Expect(CStr, "0.333333333333333", {1.0 / 3});
  Expect(CStr, "100000000000000", {1e14});
  Expect(CStr, "1E+20", {1e20});
  Expect(CStr, "1E-05", {0.00001});
  Expect(CStr, "True", {true});
  Expect(CStr, "12:00:00 AM", {Date{0}});
  Expect(CStr, "Error 5", {Variant::Error(5)});
  Expect(CStr, "Error 448", {Variant::Missing()});
  Expect(CStr, "error 6", {Date{3e6}});
  Expect(CStr, "error 94", {Variant::Null()});
  Expect(CStr, "error 91", {nullptr});
  Expect(JoinText, "", {Variant(), Variant::Null(), FieldHolding(Variant::Null())});
  Expect(JoinText, "False", {false});
  Expect(JoinText, "error 13", {Variant::Missing(), Variant::Error(5)});

  // Bad text neither crashes nor hangs.
  const std::initializer_list<Variant> badTexts = {String(4 << 20, 'x'), String(4 << 20, ' ') + "x",
                                                   String("12\0", 3), String("\xff\xfe\xfd"),
                                                   String("1\xc3")};
  Expect(CLng, "error 13", badTexts);
  Expect(Serial, "error 13", badTexts);
  Expect(CLng, "error 6", {String(4 << 20, '9')});
}

TEST_F(ConversionsTest, RegionalDecimalSeparator) {
  platform::SetRegionalLocale("de_DE");
  EXPECT_EQ(CStr(2.5), "2,5");
  EXPECT_EQ(CDbl("2,5"), 2.5);
  EXPECT_THROW(CDbl("2.5"), platform::Error);
  EXPECT_EQ(CStr(Date{36233}), "14.03.99");
}

// Months and days out of range roll over; two-digit years are 19xx.
TEST(DateSerialTest, BuildsDatesAndTimes) {
  const std::pair<Date, double> cases[] = {
      {DateSerial(99, 3, 14), 36233},       {DateSerial(1999, 1, 0), 36160},
      {DateSerial(1998, 15, 14), 36233},    {DateSerial(2000, -9, 14), 36233},
      {TimeSerial(25, 0, 0), 1 + 1.0 / 24}, {TimeSerial(-1, 0, 0), -1 - 23.0 / 24}};
  for (const auto& [date, serial] : cases) EXPECT_NEAR(date.serial, serial, 1e-9);
  EXPECT_THROW(DateSerial(9999, 12, 32), platform::Error);
}

}  // namespace
}  // namespace brindlewayProj
