// Regional settings through ICU: the locale chosen from the environment or an override,
// date text in the short date and long time of that locale, date reading, and the
// decimal separator. ICU formatters are slow to build, so each thread keeps one set per
// locale (formatters are not safe to share between threads).
#include "platform/regional.h"

#include <unicode/dcfmtsym.h>
#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "platform/calendar.h"
#include "platform/error.h"

namespace brindlewayProj::platform {
namespace {

std::mutex localeMutex;
String localeOverride;  // guarded by localeMutex; empty means the process locale

// "de_DE.UTF-8@euro" -> "de_DE"; unset, "C" and "POSIX" mean US English.
String IcuLocaleName(String name) {
  name = name.substr(0, name.find_first_of(".@"));
  if (name.empty() || name == "C" || name == "POSIX") return "en_US";
  return name;
}

String CurrentLocaleName() {
  {
    std::lock_guard lock(localeMutex);
    if (!localeOverride.empty()) return IcuLocaleName(localeOverride);
  }
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return IcuLocaleName(value);
  }
  return IcuLocaleName("");
}

void Check(UErrorCode status, const char* what) {
  if (U_FAILURE(status)) {
    Raise(errInternal,
          String("Regional settings: ") + what + " failed (" + u_errorName(status) + ")");
  }
}

// Gregorian for every year, in UTC: civil fields are formatted as they are.
icu::Calendar* NewCalendar(const icu::Locale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  auto calendar =
      std::make_unique<icu::GregorianCalendar>(icu::TimeZone::getGMT()->clone(), locale, status);
  calendar->setGregorianChange(U_DATE_MIN, status);
  Check(status, "the calendar");
  return calendar.release();
}

std::unique_ptr<icu::DateFormat> Prepared(icu::DateFormat* format, const icu::Locale& locale) {
  if (format == nullptr) Raise(errInternal, "Regional settings: no date format for the locale");
  std::unique_ptr<icu::DateFormat> owned(format);
  owned->adoptCalendar(NewCalendar(locale));
  return owned;
}

// Which of day, month and year come first in a date pattern, and the same pattern with
// every year field widened to the full year.
struct PatternShape {
  String fieldOrder;  // "dmy", "mdy", "ymd", ...
  icu::UnicodeString fullYearPattern;
};

PatternShape ShapeOf(const icu::UnicodeString& pattern) {
  PatternShape shape;
  bool quoted = false;
  for (int32_t i = 0; i < pattern.length(); ++i) {
    const char16_t c = pattern.charAt(i);
    if (c == u'\'') quoted = !quoted;
    if (quoted || c == u'\'') {
      shape.fullYearPattern.append(c);
      continue;
    }
    const char field = c == u'd' ? 'd' : (c == u'M' || c == u'L') ? 'm' : c == u'y' ? 'y' : 0;
    if (field != 0 && shape.fieldOrder.find(field) == String::npos) shape.fieldOrder += field;
    const bool repeatedYear = c == u'y' && i > 0 && pattern.charAt(i - 1) == u'y';
    if (!repeatedYear) shape.fullYearPattern.append(c);
  }
  if (shape.fieldOrder.size() != 3) shape.fieldOrder = "mdy";
  return shape;
}

struct RegionalFormats {
  std::unique_ptr<icu::DateFormat> shortDate;
  std::unique_ptr<icu::DateFormat> shortDateFullYear;  // years outside 1930-2029
  std::unique_ptr<icu::DateFormat> longTime;
  String fieldOrder;
  String decimalSeparator;
};

std::unique_ptr<RegionalFormats> BuildFormats(const String& name) {
  UErrorCode status = U_ZERO_ERROR;
  icu::Locale locale(name.c_str());
  locale.setKeywordValue("calendar", "gregorian", status);
  Check(status, "the locale");
  auto formats = std::make_unique<RegionalFormats>();
  formats->shortDate =
      Prepared(icu::DateFormat::createDateInstance(icu::DateFormat::kShort, locale), locale);
  formats->longTime =
      Prepared(icu::DateFormat::createTimeInstance(icu::DateFormat::kMedium, locale), locale);
  icu::UnicodeString pattern;
  if (auto* simple = dynamic_cast<icu::SimpleDateFormat*>(formats->shortDate.get())) {
    simple->toPattern(pattern);
  } else {
    pattern = u"M/d/yy";
  }
  PatternShape shape = ShapeOf(pattern);
  formats->fieldOrder = shape.fieldOrder;
  formats->shortDateFullYear =
      Prepared(new icu::SimpleDateFormat(shape.fullYearPattern, locale, status), locale);
  Check(status, "the short date pattern");
  icu::DecimalFormatSymbols symbols(locale, status);
  Check(status, "the number symbols");
  symbols.getSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol)
      .toUTF8String(formats->decimalSeparator);
  return formats;
}

const RegionalFormats& CurrentFormats() {
  thread_local std::unordered_map<String, std::unique_ptr<RegionalFormats>> cache;
  const String name = CurrentLocaleName();
  auto found = cache.find(name);
  if (found == cache.end()) found = cache.emplace(name, BuildFormats(name)).first;
  return *found->second;
}

// ICU puts narrow and non-breaking spaces into times ("2:05 PM"); the platform uses blanks.
String PlainText(icu::UnicodeString text) {
  text.findAndReplace(icu::UnicodeString(char16_t{0x202F}), u" ");
  text.findAndReplace(icu::UnicodeString(char16_t{0x00A0}), u" ");
  String out;
  return text.toUTF8String(out);
}

constexpr double kUnixEpochDay = 25569;  // 1 Jan 1970 as a day number
constexpr double kMillisPerDay = 86400000;

// ---- Reading dates ----

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

}  // namespace

void SetRegionalLocale(const String& name) {
  std::lock_guard lock(localeMutex);
  localeOverride = name;
}

String DateText(Date value) {
  const auto civil = ToCivil(value);
  if (!civil) Raise(errOverflow);
  const RegionalFormats& formats = CurrentFormats();
  CivilTime day = *civil;
  day.hour = day.minute = day.second = 0;
  const double dayNumber = FromCivil(day)->serial;
  const double secondOfDay = civil->hour * 3600 + civil->minute * 60 + civil->second;
  const UDate instant = (dayNumber - kUnixEpochDay) * kMillisPerDay + secondOfDay * 1000;

  icu::UnicodeString text;
  if (dayNumber == 0) return PlainText(formats.longTime->format(instant, text));
  const bool twoDigitYear = civil->year >= 1930 && civil->year <= 2029;
  (twoDigitYear ? formats.shortDate : formats.shortDateFullYear)->format(instant, text);
  if (secondOfDay != 0) {
    text.append(u' ');
    formats.longTime->format(instant, text);
  }
  return PlainText(text);
}

std::optional<Date> ParseDateText(const String& text) {
  // No date is longer than this; longer texts are refused before any work.
  constexpr size_t kLongestDateText = 64;
  if (text.size() > kLongestDateText) return std::nullopt;
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
  if (hasDate && !ReadDate(words[next++], CurrentFormats().fieldOrder, time)) return std::nullopt;
  const size_t rest = words.size() - next;
  if (rest > 2) return std::nullopt;
  if (rest > 0 && !ReadTime(words[next], rest == 2 ? words[next + 1] : "", time)) {
    return std::nullopt;
  }
  return FromCivil(time);
}

String DecimalSeparator() { return CurrentFormats().decimalSeparator; }

}  // namespace brindlewayProj::platform
