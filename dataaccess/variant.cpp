// Variant: construction, references to a caller's variable, kinds and typed access.
#include <brindleway/variant.h>

#include "dataaccess/resolved_value.h"

namespace brindlewayProj {
namespace {

template <class... Ts>
struct Overloaded : Ts... {
  using Ts::operator()...;
};
// Spelled out for compilers that do not yet deduce aggregate arguments (clang 14).
template <class... Ts>
Overloaded(Ts...) -> Overloaded<Ts...>;

}  // namespace

Variant Variant::Null() { return Variant(Storage(NullTag{})); }
Variant Variant::Missing() { return Error(kMissingCode); }
Variant Variant::Error(Long code) { return Variant(Storage(ErrorTag{code})); }

Variant::Variant(Integer value) : value_(value) {}
Variant::Variant(Long value) : value_(value) {}
Variant::Variant(Double value) : value_(value) {}
Variant::Variant(Date value) : value_(value) {}
Variant::Variant(String value) : value_(std::move(value)) {}
Variant::Variant(const char* value) : value_(String(value)) {}
Variant::Variant(bool value) : value_(BooleanTag{value}) {}
Variant::Variant(std::nullptr_t) : value_(std::shared_ptr<Object>()) {}

Variant Variant::ByRef(String& variable) { return Variant(Storage(&variable)); }
Variant Variant::ByRef(Date& variable) { return Variant(Storage(&variable)); }
Variant Variant::ByRef(Integer& variable) { return Variant(Storage(&variable)); }
Variant Variant::ByRef(Long& variable) { return Variant(Storage(&variable)); }
Variant Variant::ByRef(bool& variable) { return Variant(Storage(&variable)); }

Integer Variant::vt() const {
  return std::visit(Overloaded{
                        [](EmptyTag) -> Integer { return vbEmpty; },
                        [](NullTag) -> Integer { return vbNull; },
                        [](Integer) -> Integer { return vbInteger; },
                        [](Long) -> Integer { return vbLong; },
                        [](Double) -> Integer { return vbDouble; },
                        [](Date) -> Integer { return vbDate; },
                        [](const String&) -> Integer { return vbString; },
                        [](const std::shared_ptr<Object>&) -> Integer { return vbObject; },
                        [](ErrorTag) -> Integer { return vbError; },
                        [](BooleanTag) -> Integer { return vbBoolean; },
                        [](String*) -> Integer { return vbByRef | vbString; },
                        [](Date*) -> Integer { return vbByRef | vbDate; },
                        [](Integer*) -> Integer { return vbByRef | vbInteger; },
                        [](Long*) -> Integer { return vbByRef | vbLong; },
                        [](bool*) -> Integer { return vbByRef | vbBoolean; },
                    },
                    value_);
}

bool Variant::IsByRef() const { return (vt() & vbByRef) != 0; }

Variant Variant::Value() const {
  return std::visit(Overloaded{
                        [](String* variable) { return Variant(*variable); },
                        [](Date* variable) { return Variant(*variable); },
                        [](Integer* variable) { return Variant(*variable); },
                        [](Long* variable) { return Variant(*variable); },
                        [](bool* variable) { return Variant(*variable); },
                        [this](const auto&) { return *this; },
                    },
                    value_);
}

void Variant::Assign(const Variant& value) {
  if (!IsByRef()) {
    *this = value.Value();
    return;
  }
  // Converted before the store: a failing conversion leaves the variable as it was.
  std::visit(Overloaded{
                 [&](String* variable) { *variable = CStr(value); },
                 [&](Date* variable) { *variable = CDate(value); },
                 [&](Integer* variable) { *variable = CInt(value); },
                 [&](Long* variable) { *variable = CLng(value); },
                 [&](bool* variable) { *variable = CBool(value); },
                 [](const auto&) {},
             },
             value_);
}

Integer Variant::AsInteger() const {
  if (const auto* value = std::get_if<Integer>(&value_)) return *value;
  if (const auto* variable = std::get_if<Integer*>(&value_)) return **variable;
  platform::Raise(platform::errTypeMismatch);
}

Long Variant::AsLong() const {
  if (const auto* value = std::get_if<Long>(&value_)) return *value;
  if (const auto* variable = std::get_if<Long*>(&value_)) return **variable;
  platform::Raise(platform::errTypeMismatch);
}

Double Variant::AsDouble() const {
  if (const auto* value = std::get_if<Double>(&value_)) return *value;
  platform::Raise(platform::errTypeMismatch);
}

Date Variant::AsDate() const {
  if (const auto* value = std::get_if<Date>(&value_)) return *value;
  if (const auto* variable = std::get_if<Date*>(&value_)) return **variable;
  platform::Raise(platform::errTypeMismatch);
}

const String& Variant::AsString() const {
  if (const auto* value = std::get_if<String>(&value_)) return *value;
  if (const auto* variable = std::get_if<String*>(&value_)) return **variable;
  platform::Raise(platform::errTypeMismatch);
}

bool Variant::AsBoolean() const {
  if (const auto* value = std::get_if<BooleanTag>(&value_)) return value->value;
  if (const auto* variable = std::get_if<bool*>(&value_)) return **variable;
  platform::Raise(platform::errTypeMismatch);
}

Long Variant::ErrorCode() const {
  if (const auto* value = std::get_if<ErrorTag>(&value_)) return value->code;
  platform::Raise(platform::errTypeMismatch);
}

const std::shared_ptr<Object>& Variant::AsObject() const {
  if (const auto* value = std::get_if<std::shared_ptr<Object>>(&value_)) return *value;
  platform::Raise(platform::errTypeMismatch);
}

Variant ResolvedValue(const Variant& value) {
  // A default value that is itself such an object is looked through as well, a few levels
  // deep at most, so that an object answering itself cannot hang the caller.
  constexpr int kDeepestDefaultValue = 8;
  Variant resolved = value.Value();
  for (int depth = 0; resolved.vt() == vbObject; ++depth) {
    const auto& object = resolved.AsObject();
    if (object == nullptr || !Deref(object).HasDefaultValue()) break;  // Nothing stays Nothing
    if (depth == kDeepestDefaultValue) platform::Raise(platform::errObjectDoesNotSupport);
    resolved = Deref(object).DefaultValue().Value();
  }
  return resolved;
}

Integer VarType(const Variant& value) { return ResolvedValue(value).vt(); }

bool IsMissing(const Variant& value) {
  const Variant plain = value.Value();
  return plain.vt() == vbError && plain.ErrorCode() == kMissingCode;
}

bool IsNull(const Variant& value) { return VarType(value) == vbNull; }

bool IsEmpty(const Variant& value) { return VarType(value) == vbEmpty; }

bool IsObject(const Variant& value) { return value.Value().vt() == vbObject; }

}  // namespace brindlewayProj
