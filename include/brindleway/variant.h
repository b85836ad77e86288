// Variant: the platform's tagged value, with by-reference values, the missing marker, the
// conversions (CStr, CLng, ...), the join text form and HasValue.
#pragma once

#include <concepts>
#include <memory>
#include <variant>

#include <brindleway/export.h>
#include <brindleway/object.h>
#include <brindleway/types.h>

namespace brindlewayProj {

// Kind words as VarType answers them; vbByRef is added by a reference to a caller's variable.
enum VbVarType : Integer {
  vbEmpty = 0,
  vbNull = 1,
  vbInteger = 2,
  vbLong = 3,
  vbDouble = 5,
  vbDate = 7,
  vbString = 8,
  vbObject = 9,
  vbError = 10,
  vbBoolean = 11,
  vbByRef = 16384,
};

// The code of the missing marker: an optional argument that was left out.
inline constexpr Long kMissingCode = static_cast<Long>(0x80020004u);

class BRINDLEWAY_API Variant {
 public:
  Variant() = default;  // Empty
  static Variant Null();
  static Variant Missing();
  static Variant Error(Long code);

  Variant(Integer value);
  Variant(Long value);
  Variant(Double value);
  Variant(Date value);
  Variant(String value);
  Variant(const char* value);
  Variant(bool value);      // Boolean: -1 or 0
  Variant(std::nullptr_t);  // Nothing
  template <class T>
  requires std::derived_from<T, Object> Variant(std::shared_ptr<T> object)
      : value_(std::shared_ptr<Object>(std::move(object))) {}

  // A Variant that refers to a caller's variable: reads and Assign go through to it.
  static Variant ByRef(String& variable);
  static Variant ByRef(Date& variable);
  static Variant ByRef(Integer& variable);
  static Variant ByRef(Long& variable);
  static Variant ByRef(bool& variable);

  // The raw kind word, with vbByRef (16384) for a reference.
  Integer vt() const;
  bool IsByRef() const;
  // The value itself: a reference read out into a plain Variant; a plain Variant as it is.
  Variant Value() const;
  // Assigns as the platform does: through a reference, converted to the referenced
  // variable's type (which can raise); on a plain Variant, replaces it.
  void Assign(const Variant& value);

  // Typed access to a plain value or through a reference; the wrong kind raises 13.
  Integer AsInteger() const;
  Long AsLong() const;
  Double AsDouble() const;
  Date AsDate() const;
  const String& AsString() const;
  bool AsBoolean() const;
  Long ErrorCode() const;
  // The object held (nullptr for Nothing); another kind raises 13.
  const std::shared_ptr<Object>& AsObject() const;
  template <class T>
  std::shared_ptr<T> ObjectAs() const {
    return std::dynamic_pointer_cast<T>(AsObject());
  }

 private:
  struct EmptyTag {};
  struct NullTag {};
  struct ErrorTag {
    Long code;
  };
  struct BooleanTag {
    bool value;
  };
  using Storage =
      std::variant<EmptyTag, NullTag, Integer, Long, Double, Date, String, std::shared_ptr<Object>,
                   ErrorTag, BooleanTag, String*, Date*, Integer*, Long*, bool*>;
  explicit Variant(Storage value) : value_(std::move(value)) {}
  Storage value_;
};

// The kind word seen through a reference and through an object's default value (a Field
// reports the kind of its Value); Nothing and objects without a default value are vbObject.
BRINDLEWAY_API Integer VarType(const Variant& value);
BRINDLEWAY_API bool IsMissing(const Variant& value);
BRINDLEWAY_API bool IsNull(const Variant& value);  // looks through a Field to its Value
BRINDLEWAY_API bool IsEmpty(const Variant& value);
BRINDLEWAY_API bool IsObject(const Variant& value);

// The platform's conversions: halves round to even; out of range raises 6 "Overflow";
// Null raises 94 "Invalid use of Null"; text that is no number or date raises 13
// "Type mismatch"; Empty is 0, the empty String or day 0; a Boolean is -1 or 0.
BRINDLEWAY_API String CStr(const Variant& value);
BRINDLEWAY_API Long CLng(const Variant& value);
BRINDLEWAY_API Integer CInt(const Variant& value);
BRINDLEWAY_API Double CDbl(const Variant& value);
BRINDLEWAY_API Date CDate(const Variant& value);
BRINDLEWAY_API bool CBool(const Variant& value);

// The text form of the join operator: like CStr, but Null and Empty give "".
BRINDLEWAY_API String JoinText(const Variant& value);

// Whether a value was really given: False for the missing marker, Nothing, Null, Empty,
// a text of blanks only (trimmed in place, also through a reference) and Date 0.
BRINDLEWAY_API bool HasValue(Variant& value);

// Removes leading and trailing blanks (U+0020) and nothing else.
BRINDLEWAY_API String Trim(const String& text);

BRINDLEWAY_API Date DateSerial(Integer year, Integer month, Integer day);
BRINDLEWAY_API Date TimeSerial(Integer hour, Integer minute, Integer second);

}  // namespace brindlewayProj
