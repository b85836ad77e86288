// Regional settings: the locale chosen by override or from the environment, and the ICU
// formatters and symbols built for it.
#include "platform/regional_formats.h"

#include <unicode/dcfmtsym.h>
#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <cstdlib>
#include <mutex>
#include <unordered_map>

#include <brindleway/error.h>
#include "platform/regional.h"

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

icu::UnicodeString PatternOf(const icu::DateFormat& format) {
  icu::UnicodeString pattern;
  if (auto* simple = dynamic_cast<const icu::SimpleDateFormat*>(&format))
    simple->toPattern(pattern);
  return pattern;
}

// Reading: plain blanks where the locale has narrow or non-breaking ones (as the text was
// written), two-digit years from 1930, and no 14th month rolling into the next year.
void PrepareForReading(icu::DateFormat& format) {
  constexpr UDate kStartOf1930 = -1262304000000.0;
  UErrorCode status = U_ZERO_ERROR;
  if (auto* simple = dynamic_cast<icu::SimpleDateFormat*>(&format)) {
    icu::UnicodeString pattern = PatternOf(format);
    pattern.findAndReplace(icu::UnicodeString(char16_t{0x202F}), u" ");
    pattern.findAndReplace(icu::UnicodeString(char16_t{0x00A0}), u" ");
    simple->applyPattern(pattern);
    simple->set2DigitYearStart(kStartOf1930, status);
  }
  Check(status, "the two-digit year window");
  format.setCalendarLenient(false);
}

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
  icu::UnicodeString pattern = PatternOf(*formats->shortDate);
  if (pattern.isEmpty()) pattern = u"M/d/yy";
  PatternShape shape = ShapeOf(pattern);
  formats->fieldOrder = shape.fieldOrder;
  auto fullYear = std::make_unique<icu::SimpleDateFormat>(shape.fullYearPattern, locale, status);
  Check(status, "the short date pattern");
  formats->shortDateFullYear = Prepared(fullYear.release(), locale);
  auto dateTime = std::make_unique<icu::SimpleDateFormat>(
      pattern + u" " + PatternOf(*formats->longTime), locale, status);
  Check(status, "the date and time pattern");
  formats->dateTimeReader = Prepared(dateTime.release(), locale);
  for (auto* format :
       {formats->shortDate.get(), formats->longTime.get(), formats->dateTimeReader.get()}) {
    PrepareForReading(*format);
  }
  icu::DecimalFormatSymbols symbols(locale, status);
  Check(status, "the number symbols");
  symbols.getSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol)
      .toUTF8String(formats->decimalSeparator);
  return formats;
}

// How many RegionalSettingsHeld live on this thread, and the formats they hold once a text
// has asked for them.
thread_local int holders = 0;
thread_local const RegionalFormats* heldFormats = nullptr;

// The formats of the locale in force now; built once per thread and locale, and kept.
const RegionalFormats& LookUpFormats() {
  thread_local std::unordered_map<String, std::unique_ptr<RegionalFormats>> cache;
  const String name = CurrentLocaleName();
  auto found = cache.find(name);
  if (found == cache.end()) found = cache.emplace(name, BuildFormats(name)).first;
  return *found->second;
}

}  // namespace

const RegionalFormats& CurrentRegionalFormats() {
  if (heldFormats) return *heldFormats;
  const RegionalFormats& formats = LookUpFormats();
  if (holders > 0) heldFormats = &formats;
  return formats;
}

RegionalSettingsHeld::RegionalSettingsHeld() { ++holders; }

RegionalSettingsHeld::~RegionalSettingsHeld() {
  if (--holders == 0) heldFormats = nullptr;
}

void SetRegionalLocale(const String& name) {
  std::lock_guard lock(localeMutex);
  localeOverride = name;
}

String DecimalSeparator() { return CurrentRegionalFormats().decimalSeparator; }

}  // namespace brindlewayProj::platform
