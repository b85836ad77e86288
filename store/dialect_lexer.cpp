// The dialect's tokenizer.
#include "store/dialect_lexer.h"

#include <cctype>
#include <charconv>
#include <cstdio>
#include <optional>

#include "platform/ascii.h"
#include "store/errors.h"

namespace brindlewayProj::store::dialect {
namespace {

bool IsWordStart(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool IsWordPart(char c) { return IsWordStart(c) || std::isdigit(static_cast<unsigned char>(c)); }

[[noreturn]] void FailAt(std::string_view text, std::size_t offset) {
  throw SyntaxError(std::string(text.substr(offset)));
}

// Reads an unsigned decimal number from `text` at `pos`; empty without a digit.
std::optional<int> ReadNumber(std::string_view text, std::size_t& pos) {
  std::size_t start = pos;
  int value = 0;
  while (pos < text.size() && std::isdigit(static_cast<unsigned char>(text[pos])) &&
         pos - start < 5) {
    value = value * 10 + (text[pos++] - '0');
  }
  if (pos == start) return std::nullopt;
  return value;
}

void SkipBlanks(std::string_view text, std::size_t& pos) {
  while (pos < text.size() && text[pos] == ' ') ++pos;
}

bool IsLeapYear(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int DaysInMonth(int year, int month) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

bool ReadDatePart(std::string_view text, std::size_t& pos, int& year, int& month, int& day) {
  std::size_t start = pos;
  auto first = ReadNumber(text, pos);
  std::size_t firstLength = pos - start;
  if (!first || pos >= text.size()) return false;
  char separator = text[pos];
  if (separator != '/' && separator != '-') return false;
  ++pos;
  auto second = ReadNumber(text, pos);
  if (!second || pos >= text.size() || text[pos] != separator) return false;
  ++pos;
  std::size_t yearStart = pos;
  auto third = ReadNumber(text, pos);
  if (!third) return false;
  if (separator == '-' && firstLength != 4) return false;
  if (separator == '-') {  // ISO: year-month-day
    year = *first, month = *second, day = *third;
  } else {  // US: month/day/year with the two-digit window 00-29 -> 20xx, 30-99 -> 19xx
    month = *first, day = *second, year = *third;
    if (pos - yearStart <= 2) year += year < 30 ? 2000 : 1900;
  }
  return year >= 100 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 &&
         day <= DaysInMonth(year, month);
}

bool ReadTimePart(std::string_view text, std::size_t& pos, int& hour, int& minute, int& second) {
  auto h = ReadNumber(text, pos);
  if (!h || pos >= text.size() || text[pos] != ':') return false;
  ++pos;
  auto m = ReadNumber(text, pos);
  if (!m) return false;
  std::optional<int> s = 0;
  if (pos < text.size() && text[pos] == ':') {
    ++pos;
    s = ReadNumber(text, pos);
    if (!s) return false;
  }
  hour = *h, minute = *m, second = *s;
  SkipBlanks(text, pos);
  if (pos + 2 <= text.size()) {
    const std::string marker = platform::ToAsciiUpper(text.substr(pos, 2));
    if (marker == "AM" || marker == "PM") {
      if (hour < 1 || hour > 12) return false;
      hour = hour % 12 + (marker == "PM" ? 12 : 0);
      pos += 2;
    }
  }
  return hour <= 23 && minute <= 59 && second <= 59;
}

// The text `YYYY-MM-DD HH:MM:SS` of a date literal's inside, as dates are stored.
std::optional<std::string> DecodeDate(std::string_view inside) {
  std::size_t pos = 0;
  SkipBlanks(inside, pos);
  int year = 1899, month = 12, day = 30, hour = 0, minute = 0, second = 0;
  std::size_t probe = pos;
  bool hasDate = ReadDatePart(inside, probe, year, month, day);
  if (hasDate) {
    pos = probe;
    SkipBlanks(inside, pos);
  } else {
    year = 1899, month = 12, day = 30;
  }
  if (pos < inside.size() && !ReadTimePart(inside, pos, hour, minute, second)) {
    return std::nullopt;
  }
  SkipBlanks(inside, pos);
  if (pos != inside.size() || (!hasDate && pos == 0)) return std::nullopt;
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d %02d:%02d:%02d", year, month, day, hour,
                minute, second);
  return std::string(buffer);
}

// Reads a number literal: an integer that fits 64 bits stays one, anything else is a double.
SqlValue DecodeNumber(std::string_view digits) {
  std::int64_t whole = 0;
  auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), whole);
  if (error == std::errc() && end == digits.data() + digits.size()) return whole;
  double real = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), real);
  return real;
}

std::size_t ScanNumber(std::string_view text, std::size_t pos) {
  auto digits = [&] {
    while (pos < text.size() && std::isdigit(static_cast<unsigned char>(text[pos]))) ++pos;
  };
  digits();
  if (pos < text.size() && text[pos] == '.') {
    ++pos;
    digits();
  }
  if (pos < text.size() && (text[pos] == 'e' || text[pos] == 'E')) {
    std::size_t mark = pos++;
    if (pos < text.size() && (text[pos] == '+' || text[pos] == '-')) ++pos;
    if (pos >= text.size() || !std::isdigit(static_cast<unsigned char>(text[pos]))) return mark;
    digits();
  }
  return pos;
}

}  // namespace

bool IsKeyword(const Token& token, std::string_view keyword) {
  return token.kind == TokenKind::kWord && platform::EqualsIgnoringAsciiCase(token.text, keyword);
}

std::vector<Token> Tokenize(std::string_view text) {
  std::vector<Token> tokens;
  std::size_t pos = 0;
  while (true) {
    while (pos < text.size() && std::isspace(static_cast<unsigned char>(text[pos]))) ++pos;
    Token token;
    token.offset = pos;
    if (pos >= text.size()) {
      tokens.push_back(std::move(token));
      return tokens;
    }
    char c = text[pos];
    if (IsWordStart(c)) {
      std::size_t end = pos;
      while (end < text.size() && IsWordPart(text[end])) ++end;
      token.kind = TokenKind::kWord;
      token.text = text.substr(pos, end - pos);
      pos = end;
    } else if (c == '[') {
      std::size_t end = text.find(']', pos + 1);
      if (end == std::string_view::npos || end == pos + 1) FailAt(text, pos);
      token.kind = TokenKind::kName;
      token.text = text.substr(pos + 1, end - pos - 1);
      if (token.text.find('[') != std::string::npos) FailAt(text, pos);
      pos = end + 1;
    } else if (c == '"' || c == '\'') {
      std::string value;
      std::size_t at = pos + 1;
      while (true) {
        if (at >= text.size()) FailAt(text, pos);
        if (text[at] == c) {
          if (at + 1 < text.size() && text[at + 1] == c) {
            value += c;
            at += 2;
            continue;
          }
          break;
        }
        value += text[at++];
      }
      token.kind = TokenKind::kLiteral;
      token.value = std::move(value);
      pos = at + 1;
    } else if (c == '#') {
      std::size_t end = text.find('#', pos + 1);
      if (end == std::string_view::npos) FailAt(text, pos);
      auto date = DecodeDate(text.substr(pos + 1, end - pos - 1));
      if (!date) FailAt(text, pos);
      token.kind = TokenKind::kLiteral;
      token.value = std::move(*date);
      pos = end + 1;
    } else if (std::isdigit(static_cast<unsigned char>(c)) ||
               (c == '.' && pos + 1 < text.size() &&
                std::isdigit(static_cast<unsigned char>(text[pos + 1])))) {
      std::size_t end = ScanNumber(text, pos);
      if (end < text.size() && IsWordPart(text[end])) FailAt(text, pos);
      token.kind = TokenKind::kLiteral;
      token.value = DecodeNumber(text.substr(pos, end - pos));
      token.text = text.substr(pos, end - pos);
      pos = end;
    } else {
      static constexpr std::string_view kTwoCharacter[] = {"<>", "<=", ">="};
      token.kind = TokenKind::kSymbol;
      for (auto symbol : kTwoCharacter) {
        if (text.substr(pos, 2) == symbol) token.text = symbol;
      }
      if (token.text.empty()) {
        if (std::string_view("=<>(),*;+-").find(c) == std::string_view::npos) FailAt(text, pos);
        token.text = std::string(1, c);
      }
      pos += token.text.size();
    }
    tokens.push_back(std::move(token));
  }
}

}  // namespace brindlewayProj::store::dialect
