// The raw SQLite side of the benchmarks: connections with the store's durability (WAL,
// synchronous=FULL, foreign keys on), and statements prepared once and reused.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "bench/field_text.h"

namespace brindlewayProj::bench {

class RawStatement;

class RawDb {
 public:
  explicit RawDb(const std::filesystem::path& file);
  ~RawDb();
  RawDb(const RawDb&) = delete;
  RawDb& operator=(const RawDb&) = delete;

  sqlite3* Handle() const { return db_; }
  // Runs statements without results; a failure throws std::runtime_error.
  void Exec(const char* sql);
  void Begin();  // BEGIN IMMEDIATE
  void Commit();
  void Rollback();

 private:
  sqlite3* db_ = nullptr;
  std::unique_ptr<RawStatement> begin_, commit_, rollback_;
};

// A prepared statement. Start() resets it and clears its bindings for the next use; a failure
// throws std::runtime_error with the engine's message.
class RawStatement {
 public:
  RawStatement(const RawDb& db, const char* sql);
  ~RawStatement();
  RawStatement(const RawStatement&) = delete;
  RawStatement& operator=(const RawStatement&) = delete;

  RawStatement& Start();
  RawStatement& Bind(int index, long long value);
  RawStatement& Bind(int index, std::string_view text);
  RawStatement& BindNull(int index);
  bool Step();  // true on a row, false when done
  void Run();   // steps to the end

  bool IsNull(int column) const { return sqlite3_column_type(statement_, column) == SQLITE_NULL; }
  long long Int(int column) const { return sqlite3_column_int64(statement_, column); }
  double Real(int column) const { return sqlite3_column_double(statement_, column); }
  std::string_view Text(int column) const;

 private:
  sqlite3* db_;
  sqlite3_stmt* statement_ = nullptr;
};

// One writing call: BEGIN IMMEDIATE now, ROLLBACK unless Commit() was reached.
class RawTransaction {
 public:
  explicit RawTransaction(RawDb& db) : db_(db) { db_.Begin(); }
  ~RawTransaction();
  void Commit();

 private:
  RawDb& db_;
  bool done_ = false;
};

}  // namespace brindlewayProj::bench
