// The brindleway program's JSON: values, call answers and failures as objects, and call
// arguments read from JSON.
//
// Values: a number, text or Boolean as such; a Date as ISO 8601 text ("2026-11-22",
// "2026-11-22T14:05:00"); Null, Empty, Missing and Nothing as null; a Collection as an array;
// a Recordset as an array of objects keyed by field name, in the order of the fields; another
// object as {"object": "Workspace"}.
//
// Answers: {"method": ..., "status": n (or "result": text for BuildMultiCond), "ReturnMsg":
// ..., "changed": {name: value, ...}}; a failed call {"method": ..., "ReturnMsg": ...,
// "error": {"kind": "call", "number": n, "message": ...}}; a call that could not be made
// {"error": {"kind": "usage" or "environment", "message": ...}}.
#pragma once

#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "tools/late_call.h"

namespace brindlewayProj::cli {

using Json = nlohmann::ordered_json;

Json JsonOf(const Variant& value);
Json JsonOf(const CallReport& report);
// kind: "usage" (exit code 2) or "environment" (exit code 3).
Json ErrorJson(const char* kind, const String& message);

// The arguments of a call from a JSON object of names and values: text, numbers, Booleans and
// null as they are, an array (of such scalars) as a Collection. Another value raises
// UsageError.
std::vector<GivenArgument> GivenArgumentsOf(const Json& arguments);

// `value` on one line; bytes that are no UTF-8 become U+FFFD.
String JsonLine(const Json& value);

}  // namespace brindlewayProj::cli
