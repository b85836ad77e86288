// Arguments of a late-bound call, the call, and the text report of its answer.
#include "tools/late_call.h"

#include <algorithm>
#include <cctype>
#include <memory>
#include <optional>
#include <ostream>

#include <brindleway/collection.h>
#include "tools/commands.h"
#include "tools/value_text.h"

namespace brindlewayProj::cli {
namespace {

using server::ParamInfo;
using server::TypeKind;

bool IsObjectType(TypeKind type) {
  return type == TypeKind::Collection || type == TypeKind::Recordset ||
         type == TypeKind::Workspace || type == TypeKind::Database;
}

// ReturnMsg and the parameters the method writes for its caller ("o" + kind).
bool IsOutput(const ParamInfo& param) {
  return param.name == "ReturnMsg" || (param.name.size() > 1 && param.name[0] == 'o' &&
                                       std::islower(static_cast<unsigned char>(param.name[1])));
}

// The type a given value is converted to: the parameter's, or for a Variant its name's kind.
TypeKind ValueType(const ParamInfo& param) {
  if (param.type != TypeKind::Variant) return param.type;
  std::string_view kind = param.name.substr(std::min<std::size_t>(1, param.name.size()), 3);
  if (kind == "lng") return TypeKind::Long;
  if (kind == "int") return TypeKind::Integer;
  if (kind == "dtm") return TypeKind::Date;
  return TypeKind::String;
}

// The entries of a Collection parameter: a Collection as given, or a text split at commas.
std::shared_ptr<Collection> CollectionFrom(const Variant& given) {
  if (IsObject(given)) {
    if (auto items = given.ObjectAs<Collection>()) return items;
    platform::Raise(platform::errTypeMismatch);
  }
  const String text = CStr(given);
  auto items = std::make_shared<Collection>();
  for (std::size_t start = 0; start <= text.size();) {
    std::size_t comma = std::min(text.find(',', start), text.size());
    items->Add(Variant(text.substr(start, comma - start)));
    start = comma + 1;
  }
  return items;
}

// The value a parameter takes from what was given. A Null given for a Variant stays Null (the
// method then sees no value); a list fits a Collection only.
Variant ValueFor(const ParamInfo& param, const Variant& given) {
  if (param.type == TypeKind::Variant && IsNull(given)) return given;
  if (IsObject(given) && param.type != TypeKind::Collection) {
    platform::Raise(platform::errTypeMismatch);
  }
  switch (ValueType(param)) {
    case TypeKind::Integer:
      return CInt(given);
    case TypeKind::Long:
      return CLng(given);
    case TypeKind::Date:
      return CDate(given);
    case TypeKind::Boolean:
      return CBool(given);
    case TypeKind::String:
      return CStr(given);
    case TypeKind::Collection:
      return CollectionFrom(given);
    case TypeKind::Recordset:
    case TypeKind::Workspace:
    case TypeKind::Database:
      throw UsageError(String(param.name) + " is an object and cannot be given");
    case TypeKind::Variant:
      break;
  }
  return given;
}

Variant SuppliedValue(const ParamInfo& param) {
  switch (param.type) {
    case TypeKind::Integer:
      return Integer{0};
    case TypeKind::Long:
      return Long{0};
    case TypeKind::Date:
      return Date{};
    case TypeKind::Boolean:
      return false;
    case TypeKind::Collection:
      return std::make_shared<Collection>();
    case TypeKind::Recordset:
    case TypeKind::Workspace:
    case TypeKind::Database:
      return nullptr;
    case TypeKind::String:
    case TypeKind::Variant:
      break;
  }
  return String();
}

String ParameterList(const server::MethodInfo& method) {
  String names;
  for (const ParamInfo& param : method.params)
    names += (names.empty() ? "" : ", ") + String(param.name);
  return names;
}

}  // namespace

const server::MethodInfo& MethodNamed(const String& name) {
  const server::MethodInfo* method = server::FindMethod(name);
  if (!method) {
    throw UsageError("no method '" + name +
                     "' in _brindleway (see 'brindleway call --help' for the list)");
  }
  return *method;
}

std::vector<server::Argument> ArgumentsFromValues(const server::MethodInfo& method,
                                                  std::span<const GivenArgument> givenArguments) {
  std::vector<std::optional<Variant>> given(method.params.size());
  for (const GivenArgument& argument : givenArguments) {
    int index = server::FindParam(method, argument.name);
    if (index < 0) {
      throw UsageError(String(method.name) + " has no parameter '" + argument.name +
                       "' (parameters: " + ParameterList(method) + ")");
    }
    const ParamInfo& param = method.params[index];
    if (given[index]) throw UsageError(String(param.name) + " is given twice");
    try {
      given[index] = ValueFor(param, argument.value);
    } catch (const platform::Error& failure) {
      throw UsageError(argument.name + "=" + argument.shown + ": " + failure.Description() + " (" +
                       String(param.name) + " is " + String(server::TypeName(ValueType(param))) +
                       ")");
    }
  }
  std::vector<server::Argument> arguments;
  for (std::size_t p = 0; p < method.params.size(); ++p) {
    const ParamInfo& param = method.params[p];
    if (given[p]) {
      arguments.push_back({String(param.name), *given[p]});
    } else if (IsOutput(param) || IsObjectType(param.type)) {
      arguments.push_back({String(param.name), SuppliedValue(param)});
    } else if (!param.optional) {
      throw UsageError(String(method.name) + " needs " + String(param.name) + "=...");
    }
  }
  return arguments;
}

std::vector<server::Argument> ArgumentsFromText(const server::MethodInfo& method,
                                                std::span<const String> assignments) {
  std::vector<GivenArgument> given;
  for (const String& assignment : assignments) {
    std::size_t equals = assignment.find('=');
    if (equals == String::npos) {
      throw UsageError("'" + assignment + "' is not of the form Name=value");
    }
    String text = assignment.substr(equals + 1);
    given.push_back({assignment.substr(0, equals), Variant(text), text});
  }
  return ArgumentsFromValues(method, given);
}

CallReport CallMethod(server::Dispatch& object, const server::MethodInfo& method,
                      std::vector<server::Argument>& arguments) {
  std::vector<std::vector<String>> before;
  for (const server::Argument& argument : arguments) before.push_back(ValueLines(argument.value));

  CallReport report;
  report.method = &method;
  try {
    report.result = object.Invoke(String(method.name), arguments);
  } catch (const platform::Error& failure) {
    report.failure = failure;
  }
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const server::Argument& argument = arguments[i];
    if (argument.name == "ReturnMsg") {
      report.returnMsg = CStr(argument.value);
    } else if (!report.failure && ValueLines(argument.value) != before[i]) {
      report.changed.push_back(argument);
    }
  }
  return report;
}

int ExitCodeOf(const CallReport& report) {
  if (report.failure) return kExitCallFailed;
  return report.method->result == TypeKind::Integer && CInt(report.result) < 0 ? kExitCallFailed
                                                                               : kExitOk;
}

void WriteText(const CallReport& report, std::ostream& out) {
  if (report.failure) {
    // A failure that left the method may still have written ReturnMsg first.
    if (report.returnMsg && !report.returnMsg->empty()) {
      out << "ReturnMsg: " << OneLine(*report.returnMsg) << '\n';
    }
    return;
  }
  out << (report.method->result == TypeKind::Integer ? "status: " : "result: ")
      << ValueLines(report.result).front() << '\n';
  if (report.returnMsg) out << "ReturnMsg: " << OneLine(*report.returnMsg) << '\n';
  for (const server::Argument& argument : report.changed) {
    std::vector<String> lines = ValueLines(argument.value);
    out << argument.name << ": " << lines.front() << '\n';
    for (std::size_t line = 1; line < lines.size(); ++line) out << lines[line] << '\n';
  }
}

}  // namespace brindlewayProj::cli
