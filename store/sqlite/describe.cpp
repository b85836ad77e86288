// What a SQLite store knows of its tables and views: columns with their declared kinds, the
// integer key and foreign keys.
#include "store/sqlite/connection.h"

namespace brindlewayProj::store::sqlite {
namespace {

std::string Quoted(std::string_view name) {
  std::string quoted;
  Syntax().AppendQuotedName(quoted, name);
  return quoted;
}

}  // namespace

std::optional<SourceInfo> SqliteConnection::Describe(const std::string& name) {
  auto lookup = Prepare(
      "SELECT type, name, sql FROM sqlite_master WHERE type IN ('table', 'view') AND "
      "name = ? COLLATE NOCASE");
  lookup->Bind({name});
  if (!lookup->Step()) return std::nullopt;
  SourceInfo info;
  info.isTable = std::get<std::string>(lookup->Column(0)) == "table";
  info.name = std::get<std::string>(lookup->Column(1));
  SqlValue sql = lookup->Column(2);
  lookup.reset();
  if (auto* text = std::get_if<std::string>(&sql)) {
    info.autoIncrement = sqlite3_strlike("%AUTOINCREMENT%", text->c_str(), 0) == 0;
  }
  std::string quoted = Quoted(info.name);
  auto columns = Prepare("PRAGMA table_info(" + quoted + ")");
  columns->Bind({});
  int keyColumns = 0;
  std::string key;
  while (columns->Step()) {  // cid, name, type, notnull, dflt_value, pk
    auto columnName = std::get<std::string>(columns->Column(1));
    SqlValue type = columns->Column(2);
    auto* typeText = std::get_if<std::string>(&type);
    info.columns.push_back({columnName, KindOfDeclaredType(typeText ? *typeText : "")});
    if (std::get<std::int64_t>(columns->Column(5)) > 0) {
      ++keyColumns;
      if (typeText && sqlite3_stricmp(typeText->c_str(), "INTEGER") == 0) key = columnName;
    }
  }
  columns.reset();
  if (info.isTable && keyColumns == 1) info.integerKey = key;
  auto keys = Prepare("PRAGMA foreign_key_list(" + quoted + ")");
  keys->Bind({});
  while (keys->Step()) {  // id, seq, table, from, to, ...
    SqlValue to = keys->Column(4);
    info.foreignKeys.push_back({std::get<std::string>(keys->Column(3)),
                                std::get<std::string>(keys->Column(2)),
                                IsSqlNull(to) ? std::string() : std::get<std::string>(to)});
  }
  return info;
}

}  // namespace brindlewayProj::store::sqlite
