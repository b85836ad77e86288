// Conversions between stored values and Variants.
#include "dataaccess/dao_values.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <limits>

#include "platform/calendar.h"

namespace brindlewayProj::dao::internal {
namespace {

using store::DeclaredKind;
using store::SqlValue;

Variant WholeNumber(std::int64_t value, bool asInteger) {
  if (asInteger && value >= std::numeric_limits<Integer>::min() &&
      value <= std::numeric_limits<Integer>::max()) {
    return Variant(static_cast<Integer>(value));
  }
  if (value >= std::numeric_limits<Long>::min() && value <= std::numeric_limits<Long>::max()) {
    return Variant(static_cast<Long>(value));
  }
  return Variant(static_cast<Double>(value));
}

// The Date of stored text `YYYY-MM-DD[ HH:MM[:SS]]`; empty for any other text. Read by hand
// (every date field of every listed row passes here) with the rules of the C library's
// "%4d-%2d-%2d %2d:%2d:%2d%c" scan: blanks before a number are skipped, a number has at most
// the field's width of digits, and the text is taken when the scan fills the date alone (3),
// the date and hour and minute (5), or all six fields with nothing behind them.
std::optional<Date> ParseStoredDate(std::string_view text) {
  platform::CivilTime time;
  struct Step {
    char separator;  // 0: none; ' ': any run of blanks, none included
    std::size_t width;
    int* field;
  };
  const Step steps[] = {{0, 4, &time.year},    {'-', 2, &time.month}, {'-', 2, &time.day},
                        {' ', 2, &time.hour},  {':', 2, &time.minute}, {':', 2, &time.second}};
  std::size_t pos = 0;
  int filled = 0;
  auto isBlank = [&] {
    return pos < text.size() && std::isspace(static_cast<unsigned char>(text[pos]));
  };
  for (const Step& step : steps) {
    if (step.separator != 0 && step.separator != ' ') {
      if (pos >= text.size() || text[pos] != step.separator) break;
      ++pos;
    }
    while (isBlank()) ++pos;
    std::size_t start = pos;
    int value = 0;
    while (pos < text.size() && pos - start < step.width && text[pos] >= '0' && text[pos] <= '9') {
      value = value * 10 + (text[pos++] - '0');
    }
    if (pos == start) break;
    *step.field = value;
    ++filled;
  }
  if (filled == 6 && pos < text.size()) return std::nullopt;  // something behind the seconds
  if (filled != 3 && filled != 5 && filled != 6) return std::nullopt;
  return platform::FromCivil(time);
}

std::string StoredDate(Date value) {
  auto time = platform::ToCivil(value);
  if (!time) platform::Raise(platform::errOverflow);
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d %02d:%02d:%02d", time->year, time->month,
                time->day, time->hour, time->minute, time->second);
  return buffer;
}

}  // namespace

Variant ToVariant(const SqlValue& value, DeclaredKind kind) {
  if (auto* whole = std::get_if<std::int64_t>(&value)) {
    switch (kind) {
      case DeclaredKind::kDouble:
        return Variant(static_cast<Double>(*whole));
      case DeclaredKind::kDate:
        return Variant(Date{static_cast<double>(*whole)});
      default:
        return WholeNumber(*whole, kind == DeclaredKind::kInteger);
    }
  }
  if (auto* real = std::get_if<double>(&value)) {
    if (kind == DeclaredKind::kDate) return Variant(Date{*real});
    return Variant(*real);
  }
  if (auto* text = std::get_if<std::string>(&value)) {
    if (kind == DeclaredKind::kDate) {
      if (auto date = ParseStoredDate(*text)) return Variant(*date);
    }
    return Variant(*text);
  }
  return Variant::Null();
}

SqlValue FromVariant(const Variant& value, DeclaredKind kind) {
  if (IsNull(value) || IsEmpty(value)) return SqlValue{};
  switch (kind) {
    case DeclaredKind::kLong:
      return static_cast<std::int64_t>(CLng(value));
    case DeclaredKind::kInteger:
      return static_cast<std::int64_t>(CInt(value));
    case DeclaredKind::kDouble:
      return CDbl(value);
    case DeclaredKind::kDate:
      return StoredDate(CDate(value));
    case DeclaredKind::kText:
      return CStr(value);
    case DeclaredKind::kUnknown:
      break;
  }
  switch (VarType(value)) {
    case vbInteger:
    case vbLong:
    case vbBoolean:
      return static_cast<std::int64_t>(CLng(value));
    case vbDouble:
      return CDbl(value);
    case vbDate:
      return StoredDate(CDate(value));
    default:
      return CStr(value);
  }
}

}  // namespace brindlewayProj::dao::internal
