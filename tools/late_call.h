// Late-bound calls from the command line: arguments from "Name=value" texts, typed by the
// parameter, and a report of what the call answered and changed.
//
// Values are typed by the parameter's type in the type library, through the platform's
// conversions (CLng, CInt, CDate, CBool, CStr): "OrderId=7" is a Long, dates are text in the
// regional short form or ISO "2026-11-22", Booleans True/False or -1/0. An optional Variant
// parameter is typed by its name's kind prefix (lng Long, int Integer, dtm Date, otherwise
// String). A Collection parameter given on the command line is a comma-separated list of
// texts. The program supplies ReturnMsg, every output parameter (name "o" + kind) and every
// object parameter that is not given: empty text, 0, a new empty Collection, or Nothing.
#pragma once

#include <iosfwd>
#include <span>
#include <stdexcept>
#include <vector>

#include <brindleway/dispatch.h>

#include "server/type_library.h"

namespace brindlewayProj::cli {

// A command line that does not fit the method (exit code 2).
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The method named `name`, in any case; an unknown name raises UsageError.
const server::MethodInfo& MethodNamed(const String& name);

// The arguments of a call of `method`, named by their parameters, from "Name=value" texts
// and the supplied outputs. An unknown or repeated name, a text without "=", a missing
// required input, or a value its type does not take raises UsageError.
std::vector<server::Argument> ArgumentsFromText(const server::MethodInfo& method,
                                                std::span<const String> assignments);

// Calls `method` on `object` by its name and prints the status (or the result of
// BuildMultiCond), ReturnMsg and every other argument whose value the call changed, each
// on lines of its own. Answers the result; a failed call prints a ReturnMsg written before
// the failure and raises its platform::Error.
Variant CallAndReport(server::Dispatch& object, const server::MethodInfo& method,
                      std::vector<server::Argument>& arguments, std::ostream& out);

}  // namespace brindlewayProj::cli
