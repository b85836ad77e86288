// A value as it crosses the backend boundary: NULL, a 64-bit integer, a double or UTF-8 text.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace brindlewayProj::store {

using SqlValue = std::variant<std::monostate, std::int64_t, double, std::string>;

inline bool IsSqlNull(const SqlValue& value) {
  return std::holds_alternative<std::monostate>(value);
}

}  // namespace brindlewayProj::store
