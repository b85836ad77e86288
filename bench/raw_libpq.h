// The raw libpq side of the PostgreSQL benchmarks: one connection, statements prepared once by
// name and run with text values, and transactions.
#pragma once

#include <libpq-fe.h>

#include <set>
#include <string>
#include <vector>

namespace brindlewayProj::bench {

class RawPg {
 public:
  // Connects to `conninfo` (a URI or key=value pairs); a failure throws std::runtime_error.
  explicit RawPg(const std::string& conninfo);
  ~RawPg();
  RawPg(const RawPg&) = delete;
  RawPg& operator=(const RawPg&) = delete;

  // Runs statements without values; a failure throws.
  void Exec(const std::string& sql);
  // Prepares `sql` under `name`, on the first call for that name only.
  void Prepare(const std::string& name, const std::string& sql);
  // Runs the prepared statement `name` with `values` and answers its result, which the caller
  // clears; a failure throws.
  PGresult* Run(const std::string& name, const std::vector<std::string>& values);

 private:
  PGconn* db_;
  std::set<std::string> prepared_;
};

}  // namespace brindlewayProj::bench
