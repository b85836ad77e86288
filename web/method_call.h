// A method of the component called late-bound on the worker's object, and the HTTP code its
// answer stands for.
#pragma once

#include <string_view>
#include <vector>

#include "web/api_answer.h"

namespace brindlewayProj::web {

struct MethodAnswer {
  cli::CallReport report;
  std::vector<server::Argument> arguments;  // as the call left them
  Long failureNumber = 0;                   // the error number behind a status of -1

  Integer Status() const;
  const Variant& Value(std::string_view parameter) const;
  // {"method", "status" (or "result"), "ReturnMsg"}, or the failure that left the method.
  Json Head() const;
};

// Whether an answer lists the arguments the call changed ("changed", as 'call --json' does):
// that compares every argument before and after, rows of collections and recordsets too.
enum class Changes { Skip, Report };

// Calls `method` with the arguments named by their parameters; the outputs and objects not
// given are supplied. A name or value that does not fit raises ApiError 400.
MethodAnswer CallOnWorker(std::string_view method, std::span<const cli::GivenArgument> given,
                          Changes changes = Changes::Skip);

// What a status of 0 means for a route: a plain answer, or that a row it needs is missing.
enum class OnZero { Ok, NotFound };

// 200 for a status of 0 or more, but 404 for 0 with OnZero::NotFound. For -1, by the failure:
// 400 when the request's values did not fit (conversion, query syntax, unknown name), 422 when
// the store refused a write for a related or duplicate row, 409 when another writer held the
// rows, 503 when the store could not be used at all, 500 otherwise; 500 as well for a failure
// that left the method.
int HttpStatusOf(const MethodAnswer& answer, OnZero zero);

}  // namespace brindlewayProj::web
