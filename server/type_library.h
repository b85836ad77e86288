// The type information of the server: library brindlewayProj, interface _brindleway with its
// 18 methods (dispatch ids, parameter names, types, optional flags, defaults) and class
// brindleway. This table is the one source of it: late-bound calls, registration and the
// command-line help all read it.
#pragma once

#include <span>
#include <string_view>

#include <brindleway/variant.h>

namespace brindlewayProj {
class brindleway;
}

namespace brindlewayProj::server {

// The types that cross the interface.
enum class TypeKind {
  Integer,
  Long,
  String,
  Date,
  Boolean,
  Variant,
  Collection,
  Recordset,
  Workspace,
  Database
};

// A default value that stands in the type information for a left-out optional parameter.
struct DefaultValue {
  enum class Kind { None, Text, Boolean } kind = Kind::None;
  std::string_view text;
  bool flag = false;
};

struct ParamInfo {
  std::string_view name;
  TypeKind type;
  bool optional = false;
  DefaultValue byDefault;
};

// Calls the method on `object` with one Variant per parameter, all present, in the order of
// the parameters; each Variant is bound to the parameter's type and written back after the
// call. Answers the method's result.
using Invoker = Variant (*)(brindleway& object, std::span<Variant> arguments);

struct MethodInfo {
  std::string_view name;
  Long dispId;
  TypeKind result;
  std::span<const ParamInfo> params;
  Invoker invoke;
};

struct LibraryInfo {
  std::string_view name;
  std::string_view helpString;
  Integer majorVersion;
  Integer minorVersion;
  Long localeId;
  std::string_view libraryGuid;
  std::string_view interfaceName;
  std::string_view interfaceGuid;
  std::string_view className;
  std::string_view classGuid;
};

const LibraryInfo& Library();

// The programmatic id clients create the class under: "brindlewayProj.brindleway".
String ProgId();

// The methods of _brindleway in the order of its virtual operations.
std::span<const MethodInfo> Methods();

// By name without regard to case, or by dispatch id; nullptr when there is no such method.
const MethodInfo* FindMethod(std::string_view name);
const MethodInfo* FindMethod(Long dispId);

// The index of the named parameter without regard to case, or -1.
int FindParam(const MethodInfo& method, std::string_view name);

// "String", "Long", ... as the type library names the type.
std::string_view TypeName(TypeKind type);

// The value a left-out optional parameter takes: its default, or the missing marker.
Variant LeftOutValue(const ParamInfo& param);

// One line per method: "Name(ReturnMsg As String, [sCompOp As String = " = "]) As Integer".
String Signature(const MethodInfo& method);

}  // namespace brindlewayProj::server
