// Numbers as text and back, with the regional decimal separator.
#include "dataaccess/number_text.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include "platform/regional.h"

namespace brindlewayProj {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Roughly the power of ten of a checked number text ("123e2" is 5, "0.001" is -2):
// positive for numbers from 1 up, which is all an out-of-range result needs.
long long DecimalMagnitude(const String& plain) {
  const size_t exponentAt = plain.find('e');
  const String mantissa = plain.substr(0, exponentAt);
  long long magnitude = 0;
  const size_t point = mantissa.find('.');
  const size_t firstNonZero = mantissa.find_first_of("123456789");
  if (firstNonZero != String::npos) {
    magnitude = point == String::npos || firstNonZero < point
                    ? static_cast<long long>((point == String::npos ? mantissa.size() : point) -
                                             firstNonZero)
                    : -static_cast<long long>(firstNonZero - point - 1);
  }
  if (exponentAt != String::npos) {
    long long exponent = 0;
    const bool negative = plain[exponentAt + 1] == '-';
    for (size_t at = exponentAt + 1; at < plain.size(); ++at) {
      if (IsDigit(plain[at]) && exponent < 1000000) exponent = exponent * 10 + (plain[at] - '0');
    }
    magnitude += negative ? -exponent : exponent;
  }
  return magnitude;
}

}  // namespace

String NumberText(Double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-Infinity" : "Infinity";
  if (value == 0) return "0";  // also -0
  char buffer[32];
  // %G switches to the exponent form below 1E-4 and from 1E+15, as the platform does.
  std::snprintf(buffer, sizeof buffer, "%.15G", value);
  String text(buffer);
  const auto point = text.find('.');
  if (point != String::npos) text.replace(point, 1, platform::DecimalSeparator());
  return text;
}

std::optional<Double> ParseNumberText(const String& text) {
  const auto isSpace = [](char c) { return c == ' ' || c == '\t'; };
  size_t begin = 0;
  size_t end = text.size();
  while (begin < end && isSpace(text[begin])) ++begin;
  while (end > begin && isSpace(text[end - 1])) --end;

  // Checked by hand first, then copied with "." as separator for std::from_chars, which
  // reads neither a plus sign nor a regional separator.
  const String separator = platform::DecimalSeparator();
  String plain;
  size_t at = begin;
  if (at < end && (text[at] == '+' || text[at] == '-')) {
    if (text[at] == '-') plain += '-';
    ++at;
  }
  size_t digits = 0;
  for (; at < end && IsDigit(text[at]); ++at, ++digits) plain += text[at];
  if (at < end && text.compare(at, separator.size(), separator) == 0) {
    plain += '.';
    for (at += separator.size(); at < end && IsDigit(text[at]); ++at, ++digits) {
      plain += text[at];
    }
  }
  if (digits == 0) return std::nullopt;
  if (at < end && (text[at] == 'e' || text[at] == 'E')) {
    plain += 'e';
    ++at;
    if (at < end && (text[at] == '+' || text[at] == '-')) plain += text[at++];
    size_t exponentDigits = 0;
    for (; at < end && IsDigit(text[at]); ++at, ++exponentDigits) plain += text[at];
    if (exponentDigits == 0) return std::nullopt;
  }
  if (at != end) return std::nullopt;

  Double value = 0;
  const auto [last, error] = std::from_chars(plain.data(), plain.data() + plain.size(), value);
  if (error == std::errc::result_out_of_range) {
    // Too small for a Double reads as zero; too large as an infinity, which every
    // conversion to a whole number or a date reports as overflow.
    if (DecimalMagnitude(plain) <= 0) return 0.0;
    return plain[0] == '-' ? -HUGE_VAL : HUGE_VAL;
  }
  if (error != std::errc() || last != plain.data() + plain.size()) return std::nullopt;
  return value;
}

}  // namespace brindlewayProj
