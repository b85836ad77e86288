// Case-insensitive comparison and folding of ASCII letters, the way names, keywords and the
// ini file's words compare: only A-Z and a-z fold; every other byte, UTF-8 included, compares
// as it is, whatever the process locale.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace brindlewayProj::platform {

constexpr char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
constexpr char AsciiUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

inline std::string ToAsciiLower(std::string_view text) {
  std::string folded(text);
  std::ranges::transform(folded, folded.begin(), AsciiLower);
  return folded;
}

inline std::string ToAsciiUpper(std::string_view text) {
  std::string folded(text);
  std::ranges::transform(folded, folded.begin(), AsciiUpper);
  return folded;
}

inline bool EqualsIgnoringAsciiCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](char x, char y) { return AsciiLower(x) == AsciiLower(y); });
}

inline bool StartsWithIgnoringAsciiCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && EqualsIgnoringAsciiCase(text.substr(0, prefix.size()), prefix);
}

inline bool ContainsIgnoringAsciiCase(std::string_view text, std::string_view word) {
  // Iterators rather than std::ranges::search, whose subrange result clang 14 cannot compile
  // against libstdc++ 12.
  return word.empty() ||
         std::search(text.begin(), text.end(), word.begin(), word.end(), [](char x, char y) {
           return AsciiLower(x) == AsciiLower(y);
         }) != text.end();
}

}  // namespace brindlewayProj::platform
