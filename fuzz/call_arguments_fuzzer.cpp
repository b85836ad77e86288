// Fuzzes the program's reading of call arguments: ArgumentsFromText for the method the first
// byte picks, with the rest as "Name=value" arguments, one per line (as one command-line word
// each, so a value may hold blanks). A command line is read or refused with UsageError (or a
// platform::Error); what is read names each parameter of the method at most once, in order,
// and every parameter that is not optional.
#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

#include "fuzz/fuzz_check.h"
#include "server/type_library.h"
#include "tools/late_call.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace brindlewayProj;
  using fuzz::Require;
  if (size == 0) return 0;
  const auto methods = server::Methods();
  const server::MethodInfo& method = methods[data[0] % methods.size()];

  std::vector<String> words;
  std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
  while (!rest.empty()) {
    const auto end = std::min(rest.find('\n'), rest.size());
    words.emplace_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }

  std::vector<server::Argument> arguments;
  try {
    arguments = cli::ArgumentsFromText(method, words);
  } catch (const cli::UsageError&) {
    return 0;
  } catch (const platform::Error&) {
    return 0;
  }
  std::size_t param = 0;
  for (const server::Argument& argument : arguments) {
    for (; param < method.params.size() && method.params[param].name != argument.name; ++param) {
      Require(method.params[param].optional, "a parameter that is not optional is left out");
    }
    Require(param < method.params.size(), "an argument out of order, twice, or of no parameter");
    ++param;
  }
  for (; param < method.params.size(); ++param) {
    Require(method.params[param].optional, "a parameter that is not optional is left out");
  }
  return 0;
}
