// Late-bound calls from the command line and from JSON: arguments typed by the parameter, the
// call, and what it answered and changed.
//
// Values are typed by the parameter's type in the type library, through the platform's
// conversions (CLng, CInt, CDate, CBool, CStr): "OrderId=7" is a Long, dates are text in the
// regional short form or ISO "2026-11-22", Booleans True/False or -1/0. An optional Variant
// parameter is typed by its name's kind prefix (lng Long, int Integer, dtm Date, otherwise
// String). A Collection parameter takes a list, or a text with its entries separated by
// commas. The program supplies ReturnMsg, every output parameter (name "o" + kind) and every
// object parameter that is not given: empty text, 0, a new empty Collection, or Nothing.
#pragma once

#include <iosfwd>
#include <optional>
#include <span>
#include <stdexcept>
#include <vector>

#include <brindleway/dispatch.h>
#include "server/type_library.h"

namespace brindlewayProj::cli {

// A command line or a call that does not fit the method (exit code 2).
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The method named `name`, in any case; an unknown name raises UsageError.
const server::MethodInfo& MethodNamed(const String& name);

// One argument as the caller gives it: a text from the command line, or a value from JSON (a
// number, text, Boolean, Null, or a Collection made of a list). `shown` is how a message
// quotes it.
struct GivenArgument {
  String name;
  Variant value;
  String shown;
};

// The arguments of a call of `method`, named by their parameters, from the given ones and the
// supplied outputs. An unknown or repeated name, a missing required input, or a value its
// parameter does not take raises UsageError.
std::vector<server::Argument> ArgumentsFromValues(const server::MethodInfo& method,
                                                  std::span<const GivenArgument> given);

// The same from "Name=value" texts; a text without "=" raises UsageError.
std::vector<server::Argument> ArgumentsFromText(const server::MethodInfo& method,
                                                std::span<const String> assignments);

// What a late-bound call answered.
struct CallReport {
  const server::MethodInfo* method = nullptr;
  Variant result;                          // the status, or BuildMultiCond's condition
  std::optional<String> returnMsg;         // as the call left it, for a method that has one
  std::vector<server::Argument> changed;   // every other argument the call changed, in order
  std::optional<platform::Error> failure;  // a failure that left the method
};

// Calls `method` on `object` by its name. A failure that leaves the method is kept in the
// report with the ReturnMsg written before it, not raised.
CallReport CallMethod(server::Dispatch& object, const server::MethodInfo& method,
                      std::vector<server::Argument>& arguments);

// kExitOk, or kExitCallFailed for status -1 or a failed call.
int ExitCodeOf(const CallReport& report);

// "status: 0" (or "result: ..."), "ReturnMsg: ..." (on one line), and "Name: value" for each
// changed argument, each on lines of its own (see ValueLines). A failed call prints its
// ReturnMsg when one was written, and nothing else.
void WriteText(const CallReport& report, std::ostream& out);

}  // namespace brindlewayProj::cli
