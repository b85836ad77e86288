// Hand-made field texts of the benchmarks' raw sides.
#include "bench/field_text.h"

#include <charconv>
#include <stdexcept>

namespace brindlewayProj::bench {
namespace {

// `count` digits of `text` from `at`, or -1.
int Digits(std::string_view text, std::size_t at, std::size_t count) {
  int value = -1;
  if (at + count > text.size()) return -1;
  auto [end, error] = std::from_chars(text.data() + at, text.data() + at + count, value);
  return error == std::errc() && end == text.data() + at + count ? value : -1;
}

void AppendNumber(std::string& out, int value, bool twoDigits = false) {
  if (twoDigits && value < 10) out += '0';
  out += std::to_string(value);
}

}  // namespace

std::optional<StoredTime> ParseStoredTime(std::string_view text) {
  StoredTime time{Digits(text, 0, 4), Digits(text, 5, 2),  Digits(text, 8, 2),
                  Digits(text, 11, 2), Digits(text, 14, 2), Digits(text, 17, 2)};
  if (time.year < 0 || time.month < 0 || time.day < 0 || time.hour < 0 || time.minute < 0 ||
      time.second < 0) {
    return std::nullopt;
  }
  return time;
}

std::optional<std::string> DateText(std::string_view stored) {
  auto time = ParseStoredTime(stored);
  if (!time) throw std::runtime_error("not a stored date: " + std::string(stored));
  const bool midnight = time->hour == 0 && time->minute == 0 && time->second == 0;
  const bool dayZero = time->year == 1899 && time->month == 12 && time->day == 30;
  if (dayZero && midnight) return std::nullopt;
  std::string text;
  if (!dayZero) {
    AppendNumber(text, time->month);
    text += '/';
    AppendNumber(text, time->day);
    text += '/';
    const bool twoDigitYear = time->year >= 1930 && time->year <= 2029;
    AppendNumber(text, twoDigitYear ? time->year % 100 : time->year, twoDigitYear);
    if (midnight) return text;
    text += ' ';
  }
  AppendNumber(text, time->hour % 12 == 0 ? 12 : time->hour % 12);
  text += ':';
  AppendNumber(text, time->minute, true);
  text += ':';
  AppendNumber(text, time->second, true);
  text += time->hour < 12 ? " AM" : " PM";
  return text;
}

std::vector<std::string> Texts(const Collection& items) {
  std::vector<std::string> texts;
  for (Long i = 1; i <= items.Count(); ++i) texts.push_back(CStr(items.Item(i)));
  return texts;
}

std::optional<std::string_view> TextWithValue(std::string_view stored) {
  if (stored.find_first_not_of(' ') == std::string_view::npos) return std::nullopt;
  return stored;
}

}  // namespace brindlewayProj::bench
