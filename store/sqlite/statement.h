// A prepared SQLite statement behind the backend's Statement.
#pragma once

#include <sqlite3.h>

#include <cstdint>

#include "store/backend.h"

namespace brindlewayProj::store::sqlite {

// Test-only: the virtual-machine steps that the statements of the calling thread have run, a
// count of the engine's work that does not depend on timing or on the depth of its B-trees.
std::uint64_t VmStepsForTesting();

class SqliteStatement : public Statement {
 public:
  // Prepares `sql` for reuse; a failure raises the BackendError of its code.
  SqliteStatement(sqlite3* db, const std::string& sql);
  ~SqliteStatement() override;
  SqliteStatement(const SqliteStatement&) = delete;
  SqliteStatement& operator=(const SqliteStatement&) = delete;

  std::shared_ptr<const std::vector<ColumnInfo>> Columns() const override { return columns_; }
  void Bind(const std::vector<SqlValue>& values) override;
  bool Step() override;
  SqlValue Column(int index) const override;
  void Reset() override;

  // Whether a holder has it (see Connection::Prepare).
  bool held = false;

 private:
  sqlite3* db_;
  sqlite3_stmt* statement_ = nullptr;
  std::shared_ptr<const std::vector<ColumnInfo>> columns_;
};

}  // namespace brindlewayProj::store::sqlite
