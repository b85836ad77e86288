// Dates as text: the regional short date and long time, with plain blanks.
#include <cmath>
#include <cstdint>
#include <unordered_map>

#include "platform/calendar.h"
#include <brindleway/error.h>
#include "platform/regional.h"
#include "platform/regional_formats.h"

namespace brindlewayProj::platform {
namespace {

// ICU puts narrow and non-breaking spaces into times ("2:05 PM"); the platform uses blanks.
String PlainText(icu::UnicodeString text) {
  text.findAndReplace(icu::UnicodeString(char16_t{0x202F}), u" ");
  text.findAndReplace(icu::UnicodeString(char16_t{0x00A0}), u" ");
  String out;
  return text.toUTF8String(out);
}

constexpr double kUnixEpochDay = 25569;  // 1 Jan 1970 as a day number
constexpr double kMillisPerDay = 86400000;

// Texts made before, by key, for one set of formats; dropped when the formats change or the
// texts grow too many.
class MadeTexts {
 public:
  template <class Make>
  const String& Get(const RegionalFormats& formats, std::int64_t key, Make make) {
    if (madeWith_ != &formats || made_.size() >= 8192) {
      made_.clear();
      madeWith_ = &formats;
    }
    auto found = made_.find(key);
    if (found == made_.end()) found = made_.emplace(key, make()).first;
    return found->second;
  }

 private:
  const RegionalFormats* madeWith_ = nullptr;
  std::unordered_map<std::int64_t, String> made_;
};

// The short date of a day (its number) with the year as the platform writes it.
String DayText(double dayNumber, int year, const RegionalFormats& formats) {
  const bool twoDigitYear = year >= 1930 && year <= 2029;
  icu::UnicodeString text;
  return PlainText((twoDigitYear ? formats.shortDate : formats.shortDateFullYear)
                       ->format((dayNumber - kUnixEpochDay) * kMillisPerDay, text));
}

// The long time of a second of the day.
String TimeText(int secondOfDay, const RegionalFormats& formats) {
  icu::UnicodeString text;
  return PlainText(formats.longTime->format(secondOfDay * 1000.0, text));
}

}  // namespace

// Formatting through ICU is the dear part of listing orders, and a shop lists the same days and
// times of day again and again: each thread keeps the day and time texts it made.
String DateText(Date value) {
  const auto civil = ToCivil(value);
  if (!civil) Raise(errOverflow);
  // Day 0 (30 Dec 1899) is no day at all: its text is the time alone.
  const bool dayZero = civil->year == 1899 && civil->month == 12 && civil->day == 30;
  const int secondOfDay = civil->hour * 3600 + civil->minute * 60 + civil->second;
  const RegionalFormats& formats = CurrentRegionalFormats();
  thread_local MadeTexts days, times;
  const auto time = [&] { return TimeText(secondOfDay, formats); };
  if (dayZero) return times.Get(formats, secondOfDay, time);
  const std::int64_t dayKey = (civil->year * 16LL + civil->month) * 32 + civil->day;
  String text = days.Get(formats, dayKey, [&] {
    CivilTime day = *civil;
    day.hour = day.minute = day.second = 0;
    return DayText(FromCivil(day)->serial, civil->year, formats);
  });
  if (secondOfDay != 0) {
    text += ' ';
    text += times.Get(formats, secondOfDay, time);
  }
  return text;
}

}  // namespace brindlewayProj::platform
