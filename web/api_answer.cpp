// JSON answers, error answers, and the reading of path ids and request bodies.
#include "web/api_answer.h"

#include <charconv>
#include <cstdio>
#include <limits>

#include <nlohmann/json.hpp>

#include "platform/calendar.h"

namespace brindlewayProj::web {
namespace {

void SetJson(httplib::Response& response, int httpStatus, const Json& body) {
  response.status = httpStatus;
  response.set_content(cli::JsonLine(body), "application/json; charset=utf-8");
}

// A whole JSON number within [low, high], or nullopt.
std::optional<Long> WholeNumber(const Json& value, Long low, Long high) {
  if (!value.is_number_integer()) return std::nullopt;
  if (value.is_number_unsigned() &&
      value.get<std::uint64_t>() > static_cast<std::uint64_t>(std::numeric_limits<Long>::max())) {
    return std::nullopt;
  }
  const auto number = value.get<std::int64_t>();
  if (number < low || number > high) return std::nullopt;
  return static_cast<Long>(number);
}

// "2026-11-22" or "2026-11-22T14:05:00" as a Date, or nullopt.
std::optional<Date> IsoDateValue(const String& text) {
  platform::CivilTime civil;
  char separator = 0;
  int used = 0;
  if (text.size() == 10) {
    if (std::sscanf(text.c_str(), "%4d-%2d-%2d%n", &civil.year, &civil.month, &civil.day,
                    &used) != 3 || used != 10) {
      return std::nullopt;
    }
  } else if (text.size() != 19 ||
             std::sscanf(text.c_str(), "%4d-%2d-%2d%c%2d:%2d:%2d%n", &civil.year, &civil.month,
                         &civil.day, &separator, &civil.hour, &civil.minute, &civil.second,
                         &used) != 7 || separator != 'T' || used != 19) {
    return std::nullopt;
  }
  std::optional<Date> date = platform::FromCivil(civil);
  std::optional<platform::CivilTime> back = date ? platform::ToCivil(*date) : std::nullopt;
  if (!back || back->day != civil.day || back->month != civil.month) return std::nullopt;
  return date;
}

Variant FieldValue(const BodyField& field, const Json& value) {
  const auto refuse = [&](const char* expected) -> Variant {
    throw ApiError(kBadRequest, "value",
                   String(field.name) + " must be " + expected + ", not " + cli::JsonLine(value));
  };
  constexpr Long kLongMax = std::numeric_limits<Long>::max();
  switch (field.kind) {
    case FieldKind::Id:
    case FieldKind::Quantity:
      if (auto number = WholeNumber(value, 1, kLongMax)) return *number;
      return refuse("a whole number from 1 to 2147483647");
    case FieldKind::Integer:
      if (auto number = WholeNumber(value, std::numeric_limits<Integer>::min(),
                                    std::numeric_limits<Integer>::max())) {
        return static_cast<Integer>(*number);
      }
      return refuse("a whole number from -32768 to 32767");
    case FieldKind::Date:
      if (value.is_string()) {
        if (auto date = IsoDateValue(value.get<String>())) return *date;
      }
      return refuse("a date as \"2026-11-22\" or \"2026-11-22T14:05:00\"");
    case FieldKind::Text:
      if (value.is_string()) return value.get<String>();
      return refuse("text");
  }
  return refuse("a value");
}

}  // namespace

void SetError(httplib::Response& response, int httpStatus, const char* kind,
              const String& message) {
  SetJson(response, httpStatus, cli::ErrorJson(kind, message));
}

httplib::Server::Handler JsonRoute(Route route) {
  return [route = std::move(route)](const httplib::Request& request,
                                    httplib::Response& response) {
    try {
      Answer answer = route(request);
      SetJson(response, answer.httpStatus, answer.body);
    } catch (const ApiError& refused) {
      SetError(response, refused.HttpStatus(), refused.Kind(), refused.what());
    } catch (const platform::Error& failure) {
      // Opening the worker's session is the one call outside a method's own failure path.
      SetError(response, kUnavailable, "store", failure.Description());
    } catch (const std::exception& failure) {
      SetError(response, kServerError, "internal", failure.what());
    }
  };
}

Json BodyObject(const httplib::Request& request) {
  if (request.body.empty()) return Json::object();
  Json body = Json::parse(request.body, nullptr, false);
  if (body.is_discarded()) throw ApiError(kBadRequest, "json", "the body is not valid JSON");
  if (!body.is_object()) throw ApiError(kBadRequest, "json", "the body must be a JSON object");
  return body;
}

Long PathId(const httplib::Request& request, std::size_t index, const char* what) {
  const String text = request.matches[index];
  Long id = 0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
  if (error != std::errc() || end != text.data() + text.size() || id < 1) {
    throw ApiError(kBadRequest, "value",
                   String(what) + " must be a whole number from 1 to 2147483647, not '" + text +
                       "'");
  }
  return id;
}

std::vector<std::optional<Variant>> ReadFields(const Json& body,
                                               std::span<const BodyField> fields) {
  std::vector<std::optional<Variant>> values(fields.size());
  for (const auto& [name, value] : body.items()) {
    std::size_t f = 0;
    while (f < fields.size() && name != fields[f].name) ++f;
    if (f == fields.size()) {
      String known;
      for (const BodyField& field : fields) known += (known.empty() ? "" : ", ") + String(field.name);
      throw ApiError(kBadRequest, "value",
                     "unknown member \"" + name + "\" (this route takes: " +
                         (known.empty() ? String("none") : known) + ")");
    }
    if (!value.is_null()) values[f] = FieldValue(fields[f], value);
  }
  for (std::size_t f = 0; f < fields.size(); ++f) {
    if (fields[f].required && !values[f]) {
      throw ApiError(kBadRequest, "value", String(fields[f].name) + " is required");
    }
  }
  return values;
}

}  // namespace brindlewayProj::web
