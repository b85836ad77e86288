// Text of values for the command-line program.
#include "tools/value_text.h"

#include <brindleway/collection.h>
#include <brindleway/dao.h>

namespace brindlewayProj::cli {
namespace {

String ScalarText(const Variant& value) {
  if (IsNull(value)) return "Null";
  if (IsEmpty(value)) return "Empty";
  if (IsMissing(value)) return "Missing";
  if (VarType(value) == vbString) return "\"" + CStr(value) + "\"";
  return CStr(value);
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

std::vector<String> ValueLines(const Variant& value) {
  if (!IsObject(value)) return {ScalarText(value)};
  if (!value.AsObject()) return {"Nothing"};
  if (auto items = value.ObjectAs<Collection>()) return CollectionLines(*items);
  if (auto rows = value.ObjectAs<dao::Recordset>()) return RecordsetLines(*rows);
  return {"(object)"};
}

}  // namespace brindlewayProj::cli
