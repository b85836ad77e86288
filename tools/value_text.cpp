// Text of values for the brindleway program.
#include "tools/value_text.h"

#include <cstdio>

#include <nlohmann/json.hpp>

#include <brindleway/collection.h>
#include <brindleway/dao.h>
#include "platform/calendar.h"

namespace brindlewayProj::cli {
namespace {

String ScalarText(const Variant& value) {
  if (IsNull(value)) return "Null";
  if (IsEmpty(value)) return "Empty";
  if (IsMissing(value)) return "Missing";
  switch (VarType(value)) {
    case vbString:
      return Quoted(CStr(value));
    case vbDate:
      return IsoDate(CDate(value));
    default:
      return CStr(value);
  }
}

std::vector<String> CollectionLines(const Collection& items) {
  std::vector<String> lines{std::to_string(items.Count()) + " entries"};
  for (Long i = 1; i <= items.Count(); ++i) {
    lines.push_back("  " + std::to_string(i) + ": " + ScalarText(items.Item(i)));
  }
  return lines;
}

std::vector<String> RecordsetLines(dao::Recordset& rows) {
  const dao::Fields& fields = Deref(rows.Fields());
  String header = "  ";
  for (Long f = 0; f < fields.Count(); ++f) {
    header += (f ? " | " : "") + Deref(fields.Item(f)).Name();
  }
  std::vector<String> lines{"", header};
  Long count = 0;
  if (rows.RecordCount() > 0) {
    rows.MoveFirst();
    for (; !rows.Eof(); rows.MoveNext(), ++count) {
      String line = "  ";
      for (Long f = 0; f < fields.Count(); ++f) {
        line += (f ? " | " : "") + ScalarText(Deref(fields.Item(f)).Value());
      }
      lines.push_back(line);
    }
  }
  lines.front() = std::to_string(count) + " rows";
  return lines;
}

}  // namespace

String IsoDate(Date value) {
  std::optional<platform::CivilTime> civil = platform::ToCivil(value);
  if (!civil) return CStr(value.serial);
  char text[32];
  if (civil->hour == 0 && civil->minute == 0 && civil->second == 0) {
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", civil->year, civil->month, civil->day);
  } else {
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", civil->year, civil->month,
                  civil->day, civil->hour, civil->minute, civil->second);
  }
  return text;
}

String Quoted(const String& text) {
  return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

String OneLine(const String& text) {
  String line;
  for (char c : text) {
    if (static_cast<unsigned char>(c) >= 0x20) {
      line += c;
    } else {
      String escaped = Quoted(String(1, c));  // "\n", "\u0001"
      line += escaped.substr(1, escaped.size() - 2);
    }
  }
  return line;
}

std::vector<String> ValueLines(const Variant& value) {
  if (!IsObject(value)) return {ScalarText(value)};
  if (!value.AsObject()) return {"Nothing"};
  if (auto items = value.ObjectAs<Collection>()) return CollectionLines(*items);
  if (auto rows = value.ObjectAs<dao::Recordset>()) return RecordsetLines(*rows);
  return {"(object)"};
}

}  // namespace brindlewayProj::cli
