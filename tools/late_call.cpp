// Command-line arguments of a late-bound call, and the report of its answer.
#include "tools/late_call.h"

#include <algorithm>
#include <cctype>
#include <memory>
#include <optional>
#include <ostream>

#include <brindleway/collection.h>
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

// The type a text is converted to: the parameter's, or for a Variant its name's kind.
TypeKind TextType(const ParamInfo& param) {
  if (param.type != TypeKind::Variant) return param.type;
  std::string_view kind = param.name.substr(std::min<std::size_t>(1, param.name.size()), 3);
  if (kind == "lng") return TypeKind::Long;
  if (kind == "int") return TypeKind::Integer;
  if (kind == "dtm") return TypeKind::Date;
  return TypeKind::String;
}

Variant ValueFromText(const ParamInfo& param, const String& text) {
  const Variant given(text);
  switch (TextType(param)) {
    case TypeKind::Integer:
      return CInt(given);
    case TypeKind::Long:
      return CLng(given);
    case TypeKind::Date:
      return CDate(given);
    case TypeKind::Boolean:
      return CBool(given);
    case TypeKind::Collection: {
      auto items = std::make_shared<Collection>();
      for (std::size_t start = 0; start <= text.size();) {
        std::size_t comma = std::min(text.find(',', start), text.size());
        items->Add(Variant(text.substr(start, comma - start)));
        start = comma + 1;
      }
      return items;
    }
    case TypeKind::Recordset:
    case TypeKind::Workspace:
    case TypeKind::Database:
      throw UsageError(String(param.name) + " is an object and cannot be given as text");
    case TypeKind::String:
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

std::vector<server::Argument> ArgumentsFromText(const server::MethodInfo& method,
                                                std::span<const String> assignments) {
  std::vector<std::optional<Variant>> given(method.params.size());
  for (const String& assignment : assignments) {
    std::size_t equals = assignment.find('=');
    if (equals == String::npos) {
      throw UsageError("'" + assignment + "' is not of the form Name=value");
    }
    const String name = assignment.substr(0, equals);
    int index = server::FindParam(method, name);
    if (index < 0) {
      throw UsageError(String(method.name) + " has no parameter '" + name +
                       "' (parameters: " + ParameterList(method) + ")");
    }
    const ParamInfo& param = method.params[index];
    if (given[index]) throw UsageError(String(param.name) + " is given twice");
    try {
      given[index] = ValueFromText(param, assignment.substr(equals + 1));
    } catch (const platform::Error& failure) {
      throw UsageError(assignment + ": " + failure.Description() + " (" + String(param.name) +
                       " is " + String(server::TypeName(TextType(param))) + ")");
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

Variant CallAndReport(server::Dispatch& object, const server::MethodInfo& method,
                      std::vector<server::Argument>& arguments, std::ostream& out) {
  std::vector<std::vector<String>> before;
  for (const server::Argument& argument : arguments) before.push_back(ValueLines(argument.value));

  Variant result;
  try {
    result = object.Invoke(String(method.name), arguments);
  } catch (const platform::Error&) {
    // A failure that left the method may still have written ReturnMsg first.
    for (const server::Argument& argument : arguments) {
      if (argument.name == "ReturnMsg" && !CStr(argument.value).empty()) {
        out << "ReturnMsg: " << CStr(argument.value) << '\n';
      }
    }
    throw;
  }

  out << (method.result == TypeKind::Integer ? "status: " : "result: ") << CStr(result) << '\n';
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const server::Argument& argument = arguments[i];
    if (argument.name == "ReturnMsg") {
      out << "ReturnMsg: " << CStr(argument.value) << '\n';
      continue;
    }
    std::vector<String> after = ValueLines(argument.value);
    if (after == before[i]) continue;
    out << argument.name << ": " << after.front() << '\n';
    for (std::size_t line = 1; line < after.size(); ++line) out << after[line] << '\n';
  }
  return result;
}

}  // namespace brindlewayProj::cli
