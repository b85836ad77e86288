// A prepared PostgreSQL statement behind the backend's Statement.
#pragma once

#include <libpq-fe.h>

#include <string>
#include <vector>

#include "store/backend.h"

namespace brindlewayProj::store::postgres {

class PostgresStatement : public Statement {
 public:
  // Prepares `sql` on the server under `name`; a failure raises the statement's BackendError.
  PostgresStatement(PGconn* db, std::string name, const std::string& sql);
  ~PostgresStatement() override;
  PostgresStatement(const PostgresStatement&) = delete;
  PostgresStatement& operator=(const PostgresStatement&) = delete;

  std::shared_ptr<const std::vector<ColumnInfo>> Columns() const override { return columns_; }
  void Bind(const std::vector<SqlValue>& values) override;
  // The first Step runs the statement and takes its whole result; later ones walk it.
  bool Step() override;
  SqlValue Column(int index) const override;
  void Reset() override;
  // The rows the last run changed.
  long long Changes() const;

  // Whether a holder has it (see Connection::Prepare).
  bool held = false;

 private:
  void Run();

  PGconn* db_;
  std::string name_;
  bool writes_;  // anything but a SELECT
  int parameterCount_ = 0;
  std::shared_ptr<const std::vector<ColumnInfo>> columns_;
  std::vector<Oid> types_;
  std::vector<std::string> texts_;
  std::vector<bool> nulls_;
  PGresult* result_ = nullptr;
  int row_ = -1;
};

}  // namespace brindlewayProj::store::postgres
