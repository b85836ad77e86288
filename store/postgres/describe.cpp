// Descriptions of PostgreSQL tables and views from the catalog: columns with the kinds their
// types ask for, the identity key, and single-column foreign keys.
#include "store/postgres/connection.h"

namespace brindlewayProj::store::postgres {

std::optional<SourceInfo> PostgresConnection::Describe(const std::string& name) {
  auto lookup = Prepare(
      "SELECT c.oid::bigint, c.relname, c.relkind::text FROM pg_class c "
      "WHERE c.relkind IN ('r', 'v', 'p') AND lower(c.relname) = lower($1) "
      "AND pg_table_is_visible(c.oid) ORDER BY c.relname = $1 DESC LIMIT 1");
  lookup->Bind({name});
  if (!lookup->Step()) return std::nullopt;
  const SqlValue relation = lookup->Column(0);
  SourceInfo info;
  info.name = std::get<std::string>(lookup->Column(1));
  info.isTable = std::get<std::string>(lookup->Column(2)) != "v";
  lookup.reset();

  auto columns = Prepare(
      "SELECT a.attname, format_type(a.atttypid, NULL), a.attidentity <> '' FROM pg_attribute a "
      "WHERE a.attrelid = $1 AND a.attnum > 0 AND NOT a.attisdropped ORDER BY a.attnum");
  columns->Bind({relation});
  while (columns->Step()) {
    auto column = std::get<std::string>(columns->Column(0));
    std::string type = std::get<std::string>(columns->Column(1));
    if (type == "timestamp without time zone") type = "DATETIME";
    if (type == "double precision") type = "DOUBLE";
    info.columns.push_back({column, KindOfDeclaredType(type)});
    if (std::get<std::string>(columns->Column(2)) == "t") {
      info.integerKey = column;
      info.autoIncrement = true;  // identity columns draw from a sequence, never twice
    }
  }
  columns.reset();

  auto keys = Prepare(
      "SELECT a.attname, p.relname, b.attname FROM pg_constraint k "
      "JOIN pg_class p ON p.oid = k.confrelid "
      "JOIN pg_attribute a ON a.attrelid = k.conrelid AND a.attnum = k.conkey[1] "
      "JOIN pg_attribute b ON b.attrelid = k.confrelid AND b.attnum = k.confkey[1] "
      "WHERE k.conrelid = $1 AND k.contype = 'f' ORDER BY k.conname");
  keys->Bind({relation});
  while (keys->Step()) {
    info.foreignKeys.push_back({std::get<std::string>(keys->Column(0)),
                                std::get<std::string>(keys->Column(1)),
                                std::get<std::string>(keys->Column(2))});
  }
  return info;
}

}  // namespace brindlewayProj::store::postgres
