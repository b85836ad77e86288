// Store names: a connection URI opens PostgreSQL, anything else is a file path; and keeping a
// URI's password out of every message.
#include "store/store_name.h"

#include <algorithm>
#include <vector>

#include "platform/ascii.h"

namespace brindlewayProj::store {
namespace {

struct Span {
  std::size_t start, length;
};

// Where the URI's passwords stand, each with what goes with it (the ':' before the one after the
// user name, the "?password=" or "&password=" of a parameter), last first.
std::vector<std::pair<Span, Span>> Passwords(std::string_view uri) {
  std::vector<std::pair<Span, Span>> found;  // {what to remove, the password itself}
  const std::size_t scheme = uri.find("://");
  if (scheme == std::string_view::npos) return found;
  const std::size_t start = scheme + 3;
  const std::size_t end = std::min(uri.find_first_of("/?", start), uri.size());
  const std::size_t at = uri.rfind('@', end);
  if (at != std::string_view::npos && at >= start) {
    const std::size_t colon = uri.find(':', start);
    if (colon < at) found.push_back({{colon, at - colon}, {colon + 1, at - colon - 1}});
  }
  const std::string lower = platform::ToAsciiLower(uri);
  for (std::size_t key = lower.find("password=", end); key != std::string::npos;
       key = lower.find("password=", key + 1)) {
    if (uri[key - 1] != '?' && uri[key - 1] != '&') continue;
    const std::size_t value = key + 9;
    const std::size_t stop = std::min(uri.find('&', value), uri.size());
    found.push_back({{key - 1, stop - key + 1}, {value, stop - value}});
  }
  std::reverse(found.begin(), found.end());
  return found;
}

}  // namespace

bool IsConnectionUri(std::string_view name) {
  return platform::StartsWithIgnoringAsciiCase(name, "postgresql://") ||
         platform::StartsWithIgnoringAsciiCase(name, "postgres://");
}

std::string WithoutPassword(std::string_view uri) {
  std::string shown(uri);
  if (shown.find("://") == std::string::npos) return shown;
  for (const auto& [removed, password] : Passwords(uri)) {
    shown.erase(removed.start, removed.length);
  }
  // A removed first parameter hands its '?' on to the next one.
  const std::size_t query = shown.find_first_of("?&", shown.find("://") + 3);
  if (query != std::string::npos && shown[query] == '&') shown[query] = '?';
  return shown;
}

std::string ConcealPassword(std::string message, std::string_view uri) {
  for (const auto& [removed, password] : Passwords(uri)) {
    if (password.length == 0) continue;
    const std::string text(uri.substr(password.start, password.length));
    for (std::size_t at = 0; (at = message.find(text, at)) != std::string::npos; at += 4) {
      message.replace(at, text.size(), "****");
    }
  }
  return message;
}

}  // namespace brindlewayProj::store
