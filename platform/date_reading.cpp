// Reading dates from text: the regional short date or ISO yyyy-mm-dd, each with an optional
// time, or a time alone. Numeric forms are read by hand (quick, and the same in every
// locale); what the locale writes in words or other digits is left to ICU's parser.
#include <unicode/calendar.h>
#include <unicode/datefmt.h>

#include <memory>
#include <string_view>
#include <vector>

#include "platform/calendar.h"
#include "platform/regional.h"
#include "platform/regional_formats.h"

namespace brindlewayProj::platform {
namespace {

struct Number {
  int value = 0;
  int digits = 0;
};

// Splits `text` at `separator`; every part must be 1 to 4 digits.
std::optional<std::vector<Number>> NumbersSeparatedBy(std::string_view text, char separator) {
  std::vector<Number> numbers(1);
  for (char c : text) {
    if (c == separator) {
      numbers.emplace_back();
    } else if (c >= '0' && c <= '9' && numbers.back().digits < 4) {
      numbers.back().value = numbers.back().value * 10 + (c - '0');
      ++numbers.back().digits;
    } else {
      return std::nullopt;
    }
  }
  for (const Number& number : numbers) {
    if (number.digits == 0) return std::nullopt;
  }
  return numbers;
}

int WindowedYear(const Number& year) {
  if (year.digits > 2) return year.value;
  return year.value < 30 ? 2000 + year.value : 1900 + year.value;
}

bool ReadDate(std::string_view text, const String& fieldOrder, CivilTime& time) {
  const auto separatorAt = text.find_first_of("/.-");
  if (separatorAt == std::string_view::npos) return false;
  const auto numbers = NumbersSeparatedBy(text, text[separatorAt]);
  if (!numbers || numbers->size() != 3) return false;
  // A leading year of 3 or 4 digits is ISO order whatever the region says.
  const String order = (*numbers)[0].digits > 2 ? "ymd" : fieldOrder;
  for (size_t i = 0; i < 3; ++i) {
    const Number& number = (*numbers)[i];
    switch (order[i]) {
      case 'y':
        time.year = WindowedYear(number);
        break;
      case 'm':
        time.month = number.value;
        break;
      default:
        time.day = number.value;
        break;
    }
  }
  return true;
}

bool EqualsIgnoringCase(std::string_view text, std::string_view word) {
  if (text.size() != word.size()) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    if ((text[i] | 0x20) != word[i]) return false;
  }
  return true;
}

// "h:mm", "h:mm:ss", either with "AM" or "PM" behind it (attached or as the next word).
bool ReadTime(std::string_view text, std::string_view marker, CivilTime& time) {
  if (marker.empty() && text.size() > 2) {
    const auto tail = text.substr(text.size() - 2);
    if (EqualsIgnoringCase(tail, "am") || EqualsIgnoringCase(tail, "pm")) {
      marker = tail;
      text.remove_suffix(2);
    }
  }
  const auto numbers = NumbersSeparatedBy(text, ':');
  if (!numbers || numbers->size() < 2 || numbers->size() > 3) return false;
  for (const Number& number : *numbers) {
    if (number.digits > 2) return false;
  }
  time.hour = (*numbers)[0].value;
  time.minute = (*numbers)[1].value;
  time.second = numbers->size() == 3 ? (*numbers)[2].value : 0;
  if (marker.empty()) return true;
  const bool afternoon = EqualsIgnoringCase(marker, "pm");
  if (!afternoon && !EqualsIgnoringCase(marker, "am")) return false;
  if (time.hour > 12) return false;
  time.hour = time.hour % 12 + (afternoon ? 12 : 0);
  return true;
}

std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  size_t start = 0;
  while (start < text.size()) {
    if (text[start] == ' ') {
      ++start;
      continue;
    }
    size_t end = text.find(' ', start);
    if (end == std::string_view::npos) end = text.size();
    words.push_back(text.substr(start, end - start));
    start = end;
  }
  return words;
}

std::optional<Date> ReadNumericDate(const String& text, const String& fieldOrder) {
  std::vector<std::string_view> words = Words(text);
  // ISO date and time joined by "T".
  if (words.size() == 1 && words[0].size() > 10 && words[0][10] == 'T') {
    const std::string_view joined = words[0];
    words = {joined.substr(0, 10), joined.substr(11)};
  }
  if (words.empty() || words.size() > 3) return std::nullopt;

  // A time alone keeps the date fields of day 0.
  CivilTime time;
  size_t next = 0;
  const bool hasDate = words[0].find(':') == std::string_view::npos;
  if (hasDate && !ReadDate(words[next++], fieldOrder, time)) return std::nullopt;
  const size_t rest = words.size() - next;
  if (rest > 2) return std::nullopt;
  if (rest > 0 && !ReadTime(words[next], rest == 2 ? words[next + 1] : "", time)) {
    return std::nullopt;
  }
  return FromCivil(time);
}

// The civil fields of what `format` reads from the whole of `text`, if it reads all of it.
std::optional<CivilTime> ReadWith(const icu::DateFormat& format, const icu::UnicodeString& text) {
  icu::ParsePosition position(0);
  const UDate instant = format.parse(text, position);
  if (position.getErrorIndex() >= 0 || position.getIndex() != text.length()) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Calendar> calendar(format.getCalendar()->clone());
  calendar->setTime(instant, status);
  CivilTime time;
  time.year = calendar->get(UCAL_EXTENDED_YEAR, status);
  time.month = calendar->get(UCAL_MONTH, status) + 1;
  time.day = calendar->get(UCAL_DATE, status);
  time.hour = calendar->get(UCAL_HOUR_OF_DAY, status);
  time.minute = calendar->get(UCAL_MINUTE, status);
  time.second = calendar->get(UCAL_SECOND, status);
  if (U_FAILURE(status)) return std::nullopt;
  return time;
}

std::optional<Date> ReadWithRegionalFormats(const String& text, const RegionalFormats& formats) {
  const icu::UnicodeString unicodeText = icu::UnicodeString::fromUTF8(text).trim();
  for (const auto* format : {formats.dateTimeReader.get(), formats.shortDate.get()}) {
    if (auto time = ReadWith(*format, unicodeText)) return FromCivil(*time);
  }
  auto time = ReadWith(*formats.longTime, unicodeText);
  if (!time) return std::nullopt;
  const CivilTime dayZero;  // a time alone is a time of day 0
  time->year = dayZero.year;
  time->month = dayZero.month;
  time->day = dayZero.day;
  return FromCivil(*time);
}

}  // namespace

std::optional<Date> ParseDateText(const String& text) {
  // No date is longer than this; longer texts are refused before any work.
  constexpr size_t kLongestDateText = 128;
  if (text.size() > kLongestDateText) return std::nullopt;
  const RegionalFormats& formats = CurrentRegionalFormats();
  if (auto date = ReadNumericDate(text, formats.fieldOrder)) return date;
  return ReadWithRegionalFormats(text, formats);
}

}  // namespace brindlewayProj::platform
