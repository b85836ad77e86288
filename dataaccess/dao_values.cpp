// Conversions between stored values and Variants.
#include "dataaccess/dao_values.h"

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

// The Date of stored text `YYYY-MM-DD[ HH:MM[:SS]]`; empty for any other text.
std::optional<Date> ParseStoredDate(const std::string& text) {
  platform::CivilTime time;
  char tail = 0;
  int fields = std::sscanf(text.c_str(), "%4d-%2d-%2d %2d:%2d:%2d%c", &time.year, &time.month,
                           &time.day, &time.hour, &time.minute, &time.second, &tail);
  if (fields != 3 && fields != 5 && fields != 6) return std::nullopt;
  if (fields == 5) time.second = 0;
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
