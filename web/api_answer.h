// How the service answers: every route gives a JSON body and an HTTP code, and whatever it
// refuses becomes {"error": {"kind", "message"}} with the code that fits, never a crash.
#pragma once

#include <functional>
#include <optional>
#include <stdexcept>

#include <httplib.h>
#include <nlohmann/json.hpp>

#include "tools/json_forms.h"

namespace brindlewayProj::web {

using cli::Json;

// HTTP codes the service answers with.
enum HttpStatus : int {
  kOk = 200,
  kBadRequest = 400,
  kForbidden = 403,
  kNotFound = 404,
  kConflict = 409,
  kPayloadTooLarge = 413,
  kUnprocessable = 422,
  kServerError = 500,
  kUnavailable = 503,
};

// A request refused before any call: its HTTP code, a kind word and a message for people.
class ApiError : public std::runtime_error {
 public:
  ApiError(int httpStatus, const char* kind, const String& message)
      : std::runtime_error(message), httpStatus_(httpStatus), kind_(kind) {}
  int HttpStatus() const { return httpStatus_; }
  const char* Kind() const { return kind_; }

 private:
  int httpStatus_;
  const char* kind_;
};

struct Answer {
  int httpStatus = kOk;
  Json body;
};

// A route's handler: the JSON answer of a request, set on the response with its code. An
// ApiError becomes its error answer; a store that cannot be opened 503; anything else that
// escapes 500 with its message.
using Route = std::function<Answer(const httplib::Request&)>;
httplib::Server::Handler JsonRoute(Route route);

// Writes an error answer on `response`.
void SetError(httplib::Response& response, int httpStatus, const char* kind,
              const String& message);

// The request's body as a JSON object; an empty body is an empty object. Malformed JSON or
// another value raises ApiError 400.
Json BodyObject(const httplib::Request& request);

// The path's match `index` as a positive whole number of Long range, or ApiError 400 naming
// it as `what`.
Long PathId(const httplib::Request& request, std::size_t index, const char* what);

// One member of a request's JSON object, checked by kind; absent or null gives nullopt, and a
// required one absent raises ApiError 400, as does a value of the wrong kind.
enum class FieldKind {
  Id,        // a whole number 1 .. 2147483647
  Quantity,  // a whole number 1 .. 2147483647
  Integer,   // a whole number -32768 .. 32767
  Date,      // ISO 8601 text, "2026-11-22" or "2026-11-22T14:05:00"
  Text,
};
struct BodyField {
  const char* name;
  FieldKind kind;
  bool required = false;
};
// The members of `body` by `fields`, as Variants (Long, Integer, Date or String); a member
// not named by `fields` raises ApiError 400.
std::vector<std::optional<Variant>> ReadFields(const Json& body, std::span<const BodyField> fields);

}  // namespace brindlewayProj::web
