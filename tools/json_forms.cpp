// JSON of values and call answers, and call arguments from JSON.
#include "tools/json_forms.h"

#include <limits>

#include <nlohmann/json.hpp>

#include <brindleway/collection.h>
#include <brindleway/dao.h>
#include "tools/value_text.h"

namespace brindlewayProj::cli {
namespace {

Json RecordsetJson(dao::Recordset& rows) {
  const dao::Fields& fields = Deref(rows.Fields());
  Json list = Json::array();
  if (rows.RecordCount() > 0) {
    for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) {
      Json row = Json::object();
      for (Long f = 0; f < fields.Count(); ++f) {
        const dao::Field& field = Deref(fields.Item(f));
        row[field.Name()] = JsonOf(field.Value());
      }
      list.push_back(std::move(row));
    }
  }
  return list;
}

Json ObjectJson(const std::shared_ptr<Object>& object) {
  if (!object) return nullptr;
  if (auto items = std::dynamic_pointer_cast<Collection>(object)) {
    Json list = Json::array();
    for (Long i = 1; i <= items->Count(); ++i) list.push_back(JsonOf(items->Item(i)));
    return list;
  }
  if (auto rows = std::dynamic_pointer_cast<dao::Recordset>(object)) return RecordsetJson(*rows);
  const char* kind = std::dynamic_pointer_cast<dao::Workspace>(object)  ? "Workspace"
                     : std::dynamic_pointer_cast<dao::Database>(object) ? "Database"
                                                                        : "Object";
  return Json{{"object", kind}};
}

// A scalar of a JSON call: text, number, Boolean or null.
Variant ScalarOf(const Json& value) {
  switch (value.type()) {
    case Json::value_t::null:
      return Variant::Null();
    case Json::value_t::boolean:
      return value.get<bool>();
    case Json::value_t::string:
      return value.get<String>();
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned: {
      // A whole number beyond Long stays a Double, so that the parameter's conversion
      // reports the overflow.
      const double number = value.get<double>();
      if (number >= std::numeric_limits<Long>::min() && number <= std::numeric_limits<Long>::max())
        return value.get<Long>();
      return number;
    }
    case Json::value_t::number_float:
      return value.get<double>();
    default:
      throw UsageError(
          "a value must be text, a number, true, false, null or a list of those, not " +
          JsonLine(value));
  }
}

}  // namespace

Json JsonOf(const Variant& value) {
  if (IsObject(value)) return ObjectJson(value.AsObject());
  switch (VarType(value)) {
    case vbInteger:
    case vbLong:
      return CLng(value);
    case vbDouble:
      return CDbl(value);
    case vbBoolean:
      return CBool(value);
    case vbDate:
      return IsoDate(CDate(value));
    case vbString:
      return CStr(value);
    default:  // Empty, Null, the missing marker
      return nullptr;
  }
}

Json JsonOf(const CallReport& report) {
  Json answer = {{"method", String(report.method->name)}};
  if (report.failure) {
    if (report.returnMsg && !report.returnMsg->empty()) answer["ReturnMsg"] = *report.returnMsg;
    answer["error"] = {{"kind", "call"},
                       {"number", report.failure->Number()},
                       {"message", report.failure->Description()}};
    return answer;
  }
  answer[report.method->result == server::TypeKind::Integer ? "status" : "result"] =
      JsonOf(report.result);
  if (report.returnMsg) answer["ReturnMsg"] = *report.returnMsg;
  Json changed = Json::object();
  for (const server::Argument& argument : report.changed) {
    changed[argument.name] = JsonOf(argument.value);
  }
  answer["changed"] = std::move(changed);
  return answer;
}

Json ErrorJson(const char* kind, const String& message) {
  return {{"error", {{"kind", kind}, {"message", message}}}};
}

std::vector<GivenArgument> GivenArgumentsOf(const Json& arguments) {
  if (!arguments.is_object()) {
    throw UsageError("\"arguments\" must be an object of names and values");
  }
  std::vector<GivenArgument> given;
  for (const auto& [name, value] : arguments.items()) {
    Variant argument;
    if (value.is_array()) {
      auto items = std::make_shared<Collection>();
      for (const Json& item : value) {
        if (item.is_structured()) throw UsageError(name + ": a list holds no lists or objects");
        items->Add(ScalarOf(item));
      }
      argument = items;
    } else {
      argument = ScalarOf(value);
    }
    given.push_back({name, argument, JsonLine(value)});
  }
  return given;
}

String JsonLine(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace brindlewayProj::cli
