// SQLite statements: binding values, stepping through rows and reading columns.
#include "store/sqlite/statement.h"

#include "store/sqlite/errors.h"

namespace brindlewayProj::store::sqlite {
namespace {

thread_local std::uint64_t vmSteps = 0;

// Adds the steps of the statement's last run to the thread's count and clears its counter.
void CountSteps(sqlite3_stmt* statement) {
  vmSteps += static_cast<std::uint64_t>(sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_VM_STEP, 1));
}

}  // namespace

std::uint64_t VmStepsForTesting() { return vmSteps; }

SqliteStatement::SqliteStatement(sqlite3* db, const std::string& sql) : db_(db) {
  int code = sqlite3_prepare_v3(db, sql.c_str(), static_cast<int>(sql.size() + 1),
                                SQLITE_PREPARE_PERSISTENT, &statement_, nullptr);
  if (code != SQLITE_OK) Fail(db, code);
  int count = sqlite3_column_count(statement_);
  auto columns = std::make_shared<std::vector<ColumnInfo>>();
  for (int i = 0; i < count; ++i) {
    const char* declared = sqlite3_column_decltype(statement_, i);
    columns->push_back(
        {sqlite3_column_name(statement_, i), KindOfDeclaredType(declared ? declared : "")});
  }
  columns_ = std::move(columns);
}

SqliteStatement::~SqliteStatement() {
  CountSteps(statement_);
  sqlite3_finalize(statement_);
}

void SqliteStatement::Bind(const std::vector<SqlValue>& values) {
  Reset();
  for (std::size_t i = 0; i < values.size(); ++i) {
    int index = static_cast<int>(i + 1);
    const SqlValue& value = values[i];
    int code = SQLITE_OK;
    if (auto* whole = std::get_if<std::int64_t>(&value)) {
      code = sqlite3_bind_int64(statement_, index, *whole);
    } else if (auto* real = std::get_if<double>(&value)) {
      code = sqlite3_bind_double(statement_, index, *real);
    } else if (auto* text = std::get_if<std::string>(&value)) {
      code = sqlite3_bind_text(statement_, index, text->data(), static_cast<int>(text->size()),
                               SQLITE_TRANSIENT);
    } else {
      code = sqlite3_bind_null(statement_, index);
    }
    if (code != SQLITE_OK) Fail(db_, code);
  }
}

bool SqliteStatement::Step() {
  int code = sqlite3_step(statement_);
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  code = sqlite3_extended_errcode(db_);
  sqlite3_reset(statement_);
  Fail(db_, code);
}

SqlValue SqliteStatement::Column(int index) const {
  switch (sqlite3_column_type(statement_, index)) {
    case SQLITE_INTEGER:
      return static_cast<std::int64_t>(sqlite3_column_int64(statement_, index));
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement_, index);
    case SQLITE_NULL:
      return SqlValue{};
    default: {
      auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, index));
      return std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(statement_, index)));
    }
  }
}

void SqliteStatement::Reset() {
  CountSteps(statement_);
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
}

}  // namespace brindlewayProj::store::sqlite
