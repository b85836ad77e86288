// A prepared SQLite statement behind the backend's Statement.
#pragma once

#include <sqlite3.h>

#include "store/backend.h"

namespace brindlewayProj::store::sqlite {

class SqliteStatement : public Statement {
 public:
  // Prepares `sql` for reuse; a failure raises the BackendError of its code.
  SqliteStatement(sqlite3* db, const std::string& sql);
  ~SqliteStatement() override;
  SqliteStatement(const SqliteStatement&) = delete;
  SqliteStatement& operator=(const SqliteStatement&) = delete;

  const std::vector<ColumnInfo>& Columns() const override { return columns_; }
  void Bind(const std::vector<SqlValue>& values) override;
  bool Step() override;
  SqlValue Column(int index) const override;
  void Reset() override;

 private:
  sqlite3* db_;
  sqlite3_stmt* statement_ = nullptr;
  std::vector<ColumnInfo> columns_;
};

}  // namespace brindlewayProj::store::sqlite
