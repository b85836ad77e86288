// Backend-neutral pieces: the kind of a declared type and the choice of engine and opener.
#include "store/backend.h"

#include "platform/ascii.h"
#include "store/postgres/connection.h"
#include "store/sqlite/connection.h"
#include "store/store_name.h"

namespace brindlewayProj::store {
namespace {

ConnectionOpener& TestOpener() {
  static ConnectionOpener opener;
  return opener;
}

}  // namespace

DeclaredKind KindOfDeclaredType(std::string_view declaredType) {
  const std::string upper = platform::ToAsciiUpper(declaredType);
  if (upper == "INTEGER" || upper == "INT" || upper == "LONG") return DeclaredKind::kLong;
  if (upper == "SMALLINT" || upper == "SHORT") return DeclaredKind::kInteger;
  if (upper == "DATETIME" || upper == "DATE") return DeclaredKind::kDate;
  if (upper == "TEXT" || upper.find("CHAR") != std::string::npos) return DeclaredKind::kText;
  if (upper == "CURRENCY" || upper == "REAL" || upper == "DOUBLE" || upper == "FLOAT" ||
      upper == "NUMERIC") {
    return DeclaredKind::kDouble;
  }
  return DeclaredKind::kUnknown;
}

std::shared_ptr<Connection> OpenConnection(const std::filesystem::path& file) {
  if (TestOpener()) return TestOpener()(file);
  return OpenEngineConnection(file);
}

std::shared_ptr<Connection> OpenEngineConnection(const std::filesystem::path& file) {
  if (IsConnectionUri(file.native())) return postgres::Open(file.native());
  return sqlite::Open(file);
}

void SetConnectionOpenerForTesting(ConnectionOpener opener) { TestOpener() = std::move(opener); }

}  // namespace brindlewayProj::store
