// Raw SQLite connections and statements of the benchmarks.
#include "bench/raw_sqlite.h"

#include <stdexcept>

namespace brindlewayProj::bench {
namespace {

[[noreturn]] void Fail(sqlite3* db, std::string_view what) {
  throw std::runtime_error(std::string(what) + ": " + sqlite3_errmsg(db));
}

}  // namespace

RawDb::RawDb(const std::filesystem::path& file) {
  if (sqlite3_open_v2(file.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                      nullptr) != SQLITE_OK) {
    std::string message = sqlite3_errmsg(db_);
    sqlite3_close_v2(db_);
    throw std::runtime_error("open " + file.string() + ": " + message);
  }
  sqlite3_busy_timeout(db_, 5000);
  Exec("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA foreign_keys=ON");
  begin_ = std::make_unique<RawStatement>(*this, "BEGIN IMMEDIATE");
  commit_ = std::make_unique<RawStatement>(*this, "COMMIT");
  rollback_ = std::make_unique<RawStatement>(*this, "ROLLBACK");
}

RawDb::~RawDb() {
  begin_.reset();
  commit_.reset();
  rollback_.reset();
  sqlite3_close_v2(db_);
}

void RawDb::Exec(const char* sql) {
  if (sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) Fail(db_, sql);
}

void RawDb::Begin() { begin_->Start().Run(); }
void RawDb::Commit() { commit_->Start().Run(); }
void RawDb::Rollback() {
  if (!sqlite3_get_autocommit(db_)) rollback_->Start().Run();
}

RawStatement::RawStatement(const RawDb& db, const char* sql) : db_(db.Handle()) {
  if (sqlite3_prepare_v3(db_, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement_, nullptr) !=
      SQLITE_OK) {
    Fail(db_, sql);
  }
}

RawStatement::~RawStatement() { sqlite3_finalize(statement_); }

RawStatement& RawStatement::Start() {
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
  return *this;
}

RawStatement& RawStatement::Bind(int index, long long value) {
  if (sqlite3_bind_int64(statement_, index, value) != SQLITE_OK) Fail(db_, "bind");
  return *this;
}

RawStatement& RawStatement::Bind(int index, std::string_view text) {
  if (sqlite3_bind_text(statement_, index, text.data(), static_cast<int>(text.size()),
                        SQLITE_TRANSIENT) != SQLITE_OK) {
    Fail(db_, "bind");
  }
  return *this;
}

RawStatement& RawStatement::BindNull(int index) {
  if (sqlite3_bind_null(statement_, index) != SQLITE_OK) Fail(db_, "bind");
  return *this;
}

bool RawStatement::Step() {
  int code = sqlite3_step(statement_);
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  sqlite3_reset(statement_);
  Fail(db_, sqlite3_sql(statement_));
}

void RawStatement::Run() {
  while (Step()) {
  }
}

std::string_view RawStatement::Text(int column) const {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
  return text ? std::string_view(text, static_cast<std::size_t>(
                                           sqlite3_column_bytes(statement_, column)))
              : std::string_view();
}

RawTransaction::~RawTransaction() {
  if (!done_) db_.Rollback();
}

void RawTransaction::Commit() {
  db_.Commit();
  done_ = true;
}

}  // namespace brindlewayProj::bench
