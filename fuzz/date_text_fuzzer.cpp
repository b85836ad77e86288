// Fuzzes reading dates and numbers from text: ParseDateText and the conversions CDate, CLng,
// CInt and CDbl of a String, under US English, German or Japanese settings (chosen by the
// first byte). A text is read or refused; a conversion fails only with 6 or 13. What is read
// is a date in the platform's range whose own text reads back as the same date (within the
// two-digit year window, where the short date loses nothing), and the conversions agree.
#include <brindleway/variant.h>

#include <cmath>
#include <cstdint>
#include <optional>

#include "fuzz/fuzz_check.h"
#include "platform/calendar.h"
#include "platform/regional.h"

namespace brindlewayProj {
namespace {

using fuzz::Require;

template <class Conversion>
auto Converted(Conversion convert, const Variant& value)
    -> std::optional<decltype(convert(value))> {
  try {
    return convert(value);
  } catch (const platform::Error& failure) {
    fuzz::RequireNumber(failure, {platform::errOverflow, platform::errTypeMismatch});
    return std::nullopt;
  }
}

void SelectLocale(std::uint8_t choice) {
  static constexpr const char* kLocales[] = {"en_US", "de_DE", "ja_JP"};
  static int current = -1;
  const int wanted = choice % 3;
  if (wanted == current) return;
  platform::SetRegionalLocale(kLocales[wanted]);
  current = wanted;
}

void CheckDate(const Date& date) {
  Require(date.serial >= platform::kMinDateSerial && date.serial <= platform::kMaxDateSerial,
          "a date read outside the platform's range");
  const auto civil = platform::ToCivil(date);
  Require(civil.has_value(), "a date read without civil fields");
  if (civil->year < 1930 || civil->year > 2029) return;
  const String text = platform::DateText(date);
  Require(platform::ParseDateText(text) == date, "a date's own text reads as another date");
}

}  // namespace
}  // namespace brindlewayProj

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace brindlewayProj;
  if (size == 0) return 0;
  SelectLocale(data[0]);
  const String text(reinterpret_cast<const char*>(data) + 1, size - 1);

  const std::optional<Date> read = platform::ParseDateText(text);
  if (read) CheckDate(*read);

  const Variant value(text);
  const auto date = Converted(CDate, value);
  Require(date.has_value() == read.has_value() && (!date || *date == *read),
          "CDate of a text differs from reading it as a date");

  const auto real = Converted(CDbl, value);
  const auto whole = Converted(CLng, value);
  const auto small = Converted(CInt, value);
  if (whole) {
    Require(real && std::fabs(*real - *whole) <= 0.5, "CLng is not CDbl rounded");
  }
  if (small) Require(whole && *whole == *small, "CInt and CLng differ");
  return 0;
}
