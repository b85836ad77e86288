// The conversions, one table each: values that convert, and the failure each bad value gives.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

#include "dataaccess/collection.h"
#include "dataaccess/variant.h"
#include "platform/regional.h"

namespace brindlewayProj {
namespace {

using platform::errInvalidUseOfNull;
using platform::errObjectDoesNotSupport;
using platform::errObjectNotSet;
using platform::errOverflow;
using platform::errTypeMismatch;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class FieldLike : public Object {
 public:
  explicit FieldLike(Variant value) : value_(std::move(value)) {}
  bool HasDefaultValue() const override { return true; }
  Variant DefaultValue() const override { return value_; }

 private:
  Variant value_;
};

// A converted value, or the number of the error raised on the way.
template <class T>
struct Outcome {
  T value{};
  Long error = 0;
  bool operator==(const Outcome&) const = default;
  friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    if (outcome.error != 0) return out << "error " << outcome.error;
    return out << outcome.value;
  }
};
template <class T>
Outcome<T> Ok(T value) {
  return {value, 0};
}
template <class T>
Outcome<T> Fails(Long error) {
  return {T{}, error};
}
template <class T, class Convert>
Outcome<T> Converted(Convert convert, const Variant& value) {
  try {
    return Ok<T>(convert(value));
  } catch (const platform::Error& failure) {
    return Fails<T>(failure.Number());
  }
}

class ConversionsTest : public ::testing::Test {
 protected:
  void SetUp() override { platform::SetRegionalLocale("en_US"); }
  void TearDown() override { platform::SetRegionalLocale(""); }
};

TEST_F(ConversionsTest, CLng) {
  struct Case {
    Variant value;
    Outcome<Long> expected;
  };
  const Case cases[] = {
      {Variant(2.5), Ok<Long>(2)},
      {Variant(3.5), Ok<Long>(4)},
      {Variant(-2.5), Ok<Long>(-2)},
      {Variant(2.51), Ok<Long>(3)},
      {Variant("  12 "), Ok<Long>(12)},
      {Variant("\t-1.5e1"), Ok<Long>(-15)},
      {Variant("+7."), Ok<Long>(7)},
      {Variant(Date{36232.5}), Ok<Long>(36232)},
      {Variant(true), Ok<Long>(-1)},
      {Variant(false), Ok<Long>(0)},
      {Variant(), Ok<Long>(0)},
      {Variant(Integer{-32768}), Ok<Long>(-32768)},
      {Variant(2147483647.49), Ok<Long>(2147483647)},
      {Variant(std::make_shared<FieldLike>(Variant("42"))), Ok<Long>(42)},
      {Variant(2147483647.5), Fails<Long>(errOverflow)},
      {Variant(-2147483649.0), Fails<Long>(errOverflow)},
      {Variant("1e300"), Fails<Long>(errOverflow)},
      {Variant(kNaN), Fails<Long>(errOverflow)},
      {Variant(-kInfinity), Fails<Long>(errOverflow)},
      {Variant::Null(), Fails<Long>(errInvalidUseOfNull)},
      {Variant(std::make_shared<FieldLike>(Variant::Null())), Fails<Long>(errInvalidUseOfNull)},
      {Variant("abc"), Fails<Long>(errTypeMismatch)},
      {Variant(""), Fails<Long>(errTypeMismatch)},
      {Variant("1,5"), Fails<Long>(errTypeMismatch)},
      {Variant("1e"), Fails<Long>(errTypeMismatch)},
      {Variant("."), Fails<Long>(errTypeMismatch)},
      {Variant::Missing(), Fails<Long>(errTypeMismatch)},
      {Variant::Error(5), Fails<Long>(errTypeMismatch)},
      {Variant(nullptr), Fails<Long>(errObjectNotSet)},
      {Variant(std::make_shared<Collection>()), Fails<Long>(errObjectDoesNotSupport)},
  };
  for (size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(Converted<Long>(CLng, cases[i].value), cases[i].expected) << "case " << i;
  }
}

TEST_F(ConversionsTest, CInt) {
  struct Case {
    Variant value;
    Outcome<Integer> expected;
  };
  const Case cases[] = {
      {Variant(), Ok<Integer>(0)},
      {Variant(Long{32767}), Ok<Integer>(32767)},
      {Variant(-32768.5), Ok<Integer>(-32768)},
      {Variant(0.5), Ok<Integer>(0)},
      {Variant(1.5), Ok<Integer>(2)},
      {Variant(true), Ok<Integer>(-1)},
      {Variant(" 1 "), Ok<Integer>(1)},
      {Variant(Long{32768}), Fails<Integer>(errOverflow)},
      {Variant(32767.5), Fails<Integer>(errOverflow)},
      {Variant(Date{36233}), Fails<Integer>(errOverflow)},
      {Variant::Null(), Fails<Integer>(errInvalidUseOfNull)},
      {Variant("x"), Fails<Integer>(errTypeMismatch)},
      {Variant::Missing(), Fails<Integer>(errTypeMismatch)},
  };
  for (size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(Converted<Integer>(CInt, cases[i].value), cases[i].expected) << "case " << i;
  }
}

TEST_F(ConversionsTest, CDbl) {
  struct Case {
    Variant value;
    Outcome<Double> expected;
  };
  const Case cases[] = {
      {Variant(), Ok<Double>(0)},
      {Variant(Long{-3}), Ok<Double>(-3)},
      {Variant(Date{0.25}), Ok<Double>(0.25)},
      {Variant(" 2.5 "), Ok<Double>(2.5)},
      {Variant("1e-400"), Ok<Double>(0)},
      {Variant("0.000001"), Ok<Double>(1e-6)},
      {Variant(true), Ok<Double>(-1)},
      {Variant::Null(), Fails<Double>(errInvalidUseOfNull)},
      {Variant("2.5.1"), Fails<Double>(errTypeMismatch)},
      {Variant::Missing(), Fails<Double>(errTypeMismatch)},
  };
  for (size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(Converted<Double>(CDbl, cases[i].value), cases[i].expected) << "case " << i;
  }
  EXPECT_TRUE(std::isinf(CDbl(Variant("1e400"))));
}

TEST_F(ConversionsTest, CDate) {
  struct Case {
    Variant value;
    Outcome<double> expected;
  };
  const auto serialOf = [](const Variant& value) { return CDate(value).serial; };
  const Case cases[] = {
      {Variant("3/14/1999"), Ok<double>(36233)},
      {Variant("3/14/99"), Ok<double>(36233)},
      {Variant("1999-03-14 12:00"), Ok<double>(36233.5)},
      {Variant(Long{36233}), Ok<double>(36233)},
      {Variant(-1.25), Ok<double>(-1.25)},
      {Variant(), Ok<double>(0)},
      {Variant(true), Ok<double>(-1)},
      {Variant(std::make_shared<FieldLike>(Variant(Date{2}))), Ok<double>(2)},
      {Variant(3e6), Fails<double>(errOverflow)},
      {Variant(-657435.0), Fails<double>(errOverflow)},
      {Variant(kNaN), Fails<double>(errOverflow)},
      {Variant::Null(), Fails<double>(errInvalidUseOfNull)},
      {Variant("soon"), Fails<double>(errTypeMismatch)},
      {Variant("2/30/99"), Fails<double>(errTypeMismatch)},
      {Variant::Missing(), Fails<double>(errTypeMismatch)},
  };
  for (size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(Converted<double>(serialOf, cases[i].value), cases[i].expected) << "case " << i;
  }
}

TEST_F(ConversionsTest, CBool) {
  struct Case {
    Variant value;
    Outcome<bool> expected;
  };
  const Case cases[] = {
      {Variant(), Ok(false)},
      {Variant(Integer{0}), Ok(false)},
      {Variant(0.1), Ok(true)},
      {Variant("TRUE"), Ok(true)},
      {Variant("false"), Ok(false)},
      {Variant(" -1 "), Ok(true)},
      {Variant(Date{0}), Ok(false)},
      {Variant::Null(), Fails<bool>(errInvalidUseOfNull)},
      {Variant("yes"), Fails<bool>(errTypeMismatch)},
      {Variant(kNaN), Fails<bool>(errTypeMismatch)},
  };
  for (size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(Converted<bool>(CBool, cases[i].value), cases[i].expected) << "case " << i;
  }
}

TEST_F(ConversionsTest, CStrAndJoinText) {
  struct Case {
    Variant value;
    Outcome<String> str;
    Outcome<String> join;
  };
  const Case cases[] = {
      {Variant(), Ok<String>(""), Ok<String>("")},
      {Variant::Null(), Fails<String>(errInvalidUseOfNull), Ok<String>("")},
      {Variant(Integer{-5}), Ok<String>("-5"), Ok<String>("-5")},
      {Variant(Long{2000000}), Ok<String>("2000000"), Ok<String>("2000000")},
      {Variant(2.5), Ok<String>("2.5"), Ok<String>("2.5")},
      {Variant(-0.0), Ok<String>("0"), Ok<String>("0")},
      {Variant(1.0 / 3), Ok<String>("0.333333333333333"), Ok<String>("0.333333333333333")},
      {Variant(1e20), Ok<String>("1E+20"), Ok<String>("1E+20")},
      {Variant(1e14), Ok<String>("100000000000000"), Ok<String>("100000000000000")},
      {Variant(0.00001), Ok<String>("1E-05"), Ok<String>("1E-05")},
      {Variant(kNaN), Ok<String>("NaN"), Ok<String>("NaN")},
      {Variant(true), Ok<String>("True"), Ok<String>("True")},
      {Variant(Date{36233 + 14.0 / 24 + 5.0 / 60 / 24}), Ok<String>("3/14/99 2:05:00 PM"),
       Ok<String>("3/14/99 2:05:00 PM")},
      {Variant(Date{0}), Ok<String>("12:00:00 AM"), Ok<String>("12:00:00 AM")},
      {Variant(Date{1.0 / 86400}), Ok<String>("12:00:01 AM"), Ok<String>("12:00:01 AM")},
      {Variant(Date{3e6}), Fails<String>(errOverflow), Fails<String>(errOverflow)},
      {Variant::Error(5), Ok<String>("Error 5"), Fails<String>(errTypeMismatch)},
      {Variant::Missing(), Ok<String>("Error 448"), Fails<String>(errTypeMismatch)},
      {Variant(std::make_shared<FieldLike>(Variant(Long{3}))), Ok<String>("3"), Ok<String>("3")},
      {Variant(std::make_shared<FieldLike>(Variant::Null())), Fails<String>(errInvalidUseOfNull),
       Ok<String>("")},
      {Variant(nullptr), Fails<String>(errObjectNotSet), Fails<String>(errObjectNotSet)},
  };
  for (size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(Converted<String>(CStr, cases[i].value), cases[i].str) << "case " << i;
    EXPECT_EQ(Converted<String>(JoinText, cases[i].value), cases[i].join) << "case " << i;
  }
}

TEST_F(ConversionsTest, RegionalDecimalSeparator) {
  platform::SetRegionalLocale("de_DE");
  EXPECT_EQ(CStr(Variant(2.5)), "2,5");
  EXPECT_EQ(CDbl(Variant("2,5")), 2.5);
  EXPECT_EQ(CStr(Variant(Date{36233})), "14.03.99");
  EXPECT_EQ(CDate(Variant("14.03.1999")).serial, 36233);
  EXPECT_THROW(CDbl(Variant("2.5")), platform::Error);
}

TEST_F(ConversionsTest, BadTextEndsInTypeMismatch) {
  const String texts[] = {
      String(4 << 20, 'x'), String(4 << 20, ' ') + "x", String("12\0", 3), "\xff\xfe\xfd", "1\xc3",
  };
  for (const String& text : texts) {
    EXPECT_EQ(Converted<Long>(CLng, Variant(text)), Fails<Long>(errTypeMismatch));
    EXPECT_EQ(Converted<double>([](const Variant& v) { return CDate(v).serial; }, Variant(text)),
              Fails<double>(errTypeMismatch));
  }
  EXPECT_EQ(Converted<Long>(CLng, Variant(String(4 << 20, '9'))), Fails<Long>(errOverflow));
  EXPECT_EQ(CStr(Variant(String(4 << 20, 'x'))).size(), size_t{4 << 20});
}

TEST(DateSerialTest, BuildsDatesAndTimes) {
  struct Case {
    Date date;
    double serial;
  };
  const Case cases[] = {
      {DateSerial(1999, 3, 14), 36233},       {DateSerial(99, 3, 14), 36233},
      {DateSerial(1999, 1, 0), 36160},    // the last day of December 1998
      {DateSerial(1998, 15, 14), 36233},  // month 15 of 1998
      {DateSerial(2000, -9, 14), 36233},  // nine months back from January 2000 ... March 1999
      {DateSerial(1899, 12, 29), -1},         {TimeSerial(14, 5, 0), 14.0 / 24 + 5.0 / 1440},
      {TimeSerial(0, 0, 1), 1.0 / 86400},     {TimeSerial(25, 0, 0), 1 + 1.0 / 24},
      {TimeSerial(-1, 0, 0), -1 - 23.0 / 24},  // 11 PM of the day before day 0
  };
  for (size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_NEAR(cases[i].date.serial, cases[i].serial, 1e-9) << "case " << i;
  }
  EXPECT_THROW(DateSerial(9999, 12, 32), platform::Error);
  EXPECT_THROW(DateSerial(10000, 1, 1), platform::Error);
}

}  // namespace
}  // namespace brindlewayProj
