// BuildWhere: one search condition from a field, a value and an optional connector and
// operator, delimited by the value's kind: "#...#" for a Date, double quotes for a String,
// nothing for the rest. A value that carries nothing gives no condition; the text "NULL"
// asks for "field=NULL". bConnect chains calls: once set, the connector goes in front.
#include <brindleway/brindleway.h>

#include "component/method_frame.h"
#include "platform/ascii.h"

namespace brindlewayProj {

namespace {

// Date 0 and one second past it, as the platform writes them without a day part, stand for
// "no date given". The comparison is by text, so a Date with a day part never matches.
bool IsNoDateText(const String& text) { return text == "12:00:00 AM" || text == "12:00:01 AM"; }

}  // namespace

// Its own failure path: a failure gives the CompError message of "BuildWhere" in place of a
// condition, leaves bConnect as it was and keeps the write-backs already made.
String brindleway::BuildWhere(String& sField, Variant& vValue, bool& bConnect, Variant& vConnector,
                              Variant& vCompOp) {
  String condition;
  component::RunUnderFailurePath("BuildWhere", condition, [&]() -> Integer {
    const Integer kind = VarType(vValue);
    if (kind == vbString) vValue.Assign(Trim(CStr(vValue)));

    const String connector = IsMissing(vConnector)
                                 ? String(" AND ")
                                 : String(" ").append(Trim(JoinText(vConnector))).append(" ");
    vConnector.Assign(connector);
    const String compOp = IsMissing(vCompOp) ? String("=") : Trim(JoinText(vCompOp));
    vCompOp.Assign(compOp);

    if (sField.empty() || kind == vbEmpty || kind == vbNull) return 0;
    const String prefix = bConnect ? connector : String();

    const String valueText = JoinText(vValue);
    const bool asksForNull = kind == vbString && platform::EqualsIgnoringAsciiCase(valueText, "NULL");
    const bool carriesNothing = (kind == vbString && (valueText.empty() || asksForNull)) ||
                                (kind == vbDate && IsNoDateText(valueText));
    if (carriesNothing) {
      if (asksForNull) {
        condition = prefix + sField + "=NULL";
        // A condition was written, so one that follows needs its connector.
        bConnect = true;
      }
      return 0;
    }

    switch (kind) {
      case vbDate:
        condition = prefix + "(" + sField + compOp + "#" + valueText + "#)";
        break;
      case vbString:
        condition = prefix + "(" + sField + compOp + "\"" + valueText + "\")";
        break;
      default:
        condition = prefix + "(" + sField + compOp + valueText + ")";
        break;
    }
    bConnect = true;
    return 0;
  });
  return condition;
}

}  // namespace brindlewayProj
