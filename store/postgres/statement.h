// A prepared PostgreSQL statement behind the backend's Statement.
#pragma once

#include <libpq-fe.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/backend.h"
#include "store/postgres/channel.h"

namespace brindlewayProj::store::postgres {

class PostgresStatement : public Statement {
 public:
  // Prepares `sql` on the server under `name`; a failure raises the statement's BackendError.
  PostgresStatement(Channel& channel, std::string name, const std::string& sql);
  ~PostgresStatement() override;
  PostgresStatement(const PostgresStatement&) = delete;
  PostgresStatement& operator=(const PostgresStatement&) = delete;

  std::shared_ptr<const std::vector<ColumnInfo>> Columns() const override { return columns_; }
  void Bind(const std::vector<SqlValue>& values) override;
  // The first Step runs the statement and takes its whole result; later ones walk it. A
  // dynaset's statement on a whole table (the row identity first, no WHERE) inside a transaction
  // runs as a cursor instead, fetched in batches as the rows are walked, so that opening a large
  // table to add a row costs no more than a small one.
  bool Step() override;
  SqlValue Column(int index) const override;
  std::size_t RowsReady() const override;
  void Reset() override;
  // The rows the last run changed.
  long long Changes() const;

  // Whether a holder has it (see Connection::Prepare).
  bool held = false;

 private:
  void Run();
  void Fetch();
  // Prepares this statement's DECLARE of its cursor on first use; answers its name.
  std::string PrepareDeclare();

  Channel& channel_;
  PGconn* db_;
  std::string name_;
  int parameterCount_ = 0;
  std::shared_ptr<const std::vector<ColumnInfo>> columns_;
  std::vector<Oid> types_;
  std::vector<std::string> texts_;
  std::vector<bool> nulls_;
  PGresult* result_ = nullptr;
  int row_ = -1;
  std::string sql_;
  std::string firstFetch_;  // the FETCH of the first rows of this statement's cursor
  std::string fetch_;       // and of the next ones
  bool wholeTable_;         // a dynaset's statement on a whole table
  bool declared_ = false;   // the DECLARE is prepared on the server
  bool cursorOpen_ = false;  // a cursor of this statement is open, with rows left to fetch
  std::uint64_t cursorLevel_ = 0;  // the transaction level the last cursor was declared in
};

}  // namespace brindlewayProj::store::postgres
