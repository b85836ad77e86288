// BuildMultiCond: "((field op v1) OR (field op v2) ...)" over the values of a Collection; the
// connector is OR for the operator "=" and AND for any other. It has no failure path: a
// failure (no collection, too many values, a value without a text form) fails the call.
#include <brindleway/brindleway.h>
#include "component/method_frame.h"

namespace brindlewayProj {

namespace {

// The loop index is a 16-bit Integer: stepping past 32767 overflows.
Integer NextIndex(Integer index) { return CInt(Variant(Long{index} + 1)); }

}  // namespace

String brindleway::BuildMultiCond(String& sField, CollectionRef& colCond, String& sCompOp,
                                  bool& bQuote) {
  sField = Trim(sField);
  const String quote = bQuote ? "'" : "";
  if (sField.empty()) return String();

  const String connector = Trim(sCompOp) == "=" ? "OR" : "AND";
  const Integer count = component::NarrowCount(Deref(colCond).Count());
  String condition;
  for (Integer index = 1; index <= count; index = NextIndex(index)) {
    if (index > 1) condition += " " + connector + " ";
    condition +=
        "(" + sField + sCompOp + quote + JoinText(Deref(colCond).Item(index)) + quote + ")";
  }
  return condition.empty() ? condition : "(" + condition + ")";
}

String brindleway::BuildMultiCond(String& sField, CollectionRef& colCond, String& sCompOp) {
  bool bQuote = false;
  return BuildMultiCond(sField, colCond, sCompOp, bQuote);
}

String brindleway::BuildMultiCond(String& sField, CollectionRef& colCond) {
  String sCompOp = " = ";
  bool bQuote = false;
  return BuildMultiCond(sField, colCond, sCompOp, bQuote);
}

}  // namespace brindlewayProj
