// SQLite connections and statements behind the backend interface.
#include "store/sqlite_backend.h"

#include <sqlite3.h>

#include <unordered_map>

#include "store/dialect.h"

namespace brindlewayProj::store {
namespace {

// The failure kind of an (extended) SQLite result code.
FailureKind KindOf(int code) {
  switch (code) {
    case SQLITE_CONSTRAINT_FOREIGNKEY:
      return FailureKind::kForeignKey;
    case SQLITE_CONSTRAINT_NOTNULL:
      return FailureKind::kNotNull;
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
      return FailureKind::kUnique;
    default:
      break;
  }
  switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return FailureKind::kBusy;
    case SQLITE_FULL:
      return FailureKind::kFull;
    case SQLITE_READONLY:
      return FailureKind::kReadOnly;
    case SQLITE_NOTADB:
      return FailureKind::kNotADatabase;
    case SQLITE_CANTOPEN:
      return FailureKind::kCantOpen;
    default:
      return FailureKind::kOther;
  }
}

std::string Quoted(const std::string& name) {
  std::string quoted;
  dialect::AppendQuotedName(quoted, name);
  return quoted;
}

[[noreturn]] void Fail(sqlite3* db, int code) {
  std::string message = db ? sqlite3_errmsg(db) : sqlite3_errstr(code);
  std::string detail;
  if (code == SQLITE_CONSTRAINT_NOTNULL) {  // "NOT NULL constraint failed: Table.Column"
    detail = message.substr(message.find_last_of(".:") + 1);
  }
  throw BackendError(KindOf(code), message, detail);
}

class SqliteStatement : public Statement {
 public:
  SqliteStatement(sqlite3* db, const std::string& sql) : db_(db) {
    int code = sqlite3_prepare_v3(db, sql.c_str(), static_cast<int>(sql.size() + 1),
                                  SQLITE_PREPARE_PERSISTENT, &statement_, nullptr);
    if (code != SQLITE_OK) Fail(db, code);
    int count = sqlite3_column_count(statement_);
    for (int i = 0; i < count; ++i) {
      const char* declared = sqlite3_column_decltype(statement_, i);
      columns_.push_back(
          {sqlite3_column_name(statement_, i), KindOfDeclaredType(declared ? declared : "")});
    }
  }
  ~SqliteStatement() override { sqlite3_finalize(statement_); }

  const std::vector<ColumnInfo>& Columns() const override { return columns_; }

  void Bind(const std::vector<SqlValue>& values) override {
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

  bool Step() override {
    int code = sqlite3_step(statement_);
    if (code == SQLITE_ROW) return true;
    if (code == SQLITE_DONE) return false;
    code = sqlite3_extended_errcode(db_);
    sqlite3_reset(statement_);
    Fail(db_, code);
  }

  SqlValue Column(int index) const override {
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

  void Reset() override {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
  }

 private:
  sqlite3* db_;
  sqlite3_stmt* statement_ = nullptr;
  std::vector<ColumnInfo> columns_;
};

class SqliteConnection : public Connection {
 public:
  explicit SqliteConnection(const std::filesystem::path& file) {
    int code =
        sqlite3_open_v2(file.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (code != SQLITE_OK) {
      sqlite3_close_v2(db_);
      throw BackendError(KindOf(code), sqlite3_errstr(code));
    }
    sqlite3_extended_result_codes(db_, 1);
    sqlite3_busy_timeout(db_, kBusyTimeoutMilliseconds);
    try {
      // Reading the schema here finds a file that is no database at once.
      Execute("SELECT count(*) FROM sqlite_master", {});
      Execute("PRAGMA journal_mode=WAL", {});
      Execute("PRAGMA synchronous=FULL", {});
      Execute("PRAGMA foreign_keys=ON", {});
    } catch (...) {
      statements_.clear();
      sqlite3_close_v2(db_);
      throw;
    }
  }
  ~SqliteConnection() override {
    statements_.clear();
    if (!sqlite3_get_autocommit(db_)) sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close_v2(db_);
  }

  Statement& Prepare(const std::string& sql) override {
    auto found = statements_.find(sql);
    if (found != statements_.end()) return *found->second;
    auto statement = std::make_unique<SqliteStatement>(db_, sql);
    return *statements_.emplace(sql, std::move(statement)).first->second;
  }

  long long Execute(const std::string& sql, const std::vector<SqlValue>& values) override {
    Statement& statement = Prepare(sql);
    statement.Bind(values);
    while (statement.Step()) {
    }
    statement.Reset();
    return sqlite3_changes64(db_);
  }

  std::optional<SourceInfo> Describe(const std::string& name) override {
    Statement& lookup = Prepare(
        "SELECT type, name, sql FROM sqlite_master WHERE type IN ('table', 'view') AND "
        "name = ? COLLATE NOCASE");
    lookup.Bind({name});
    if (!lookup.Step()) return std::nullopt;
    SourceInfo info;
    info.isTable = std::get<std::string>(lookup.Column(0)) == "table";
    info.name = std::get<std::string>(lookup.Column(1));
    SqlValue sql = lookup.Column(2);
    lookup.Reset();
    if (auto* text = std::get_if<std::string>(&sql)) {
      info.autoIncrement = sqlite3_strlike("%AUTOINCREMENT%", text->c_str(), 0) == 0;
    }
    std::string quoted = Quoted(info.name);
    Statement& columns = Prepare("PRAGMA table_info(" + quoted + ")");
    columns.Bind({});
    int keyColumns = 0;
    std::string key;
    while (columns.Step()) {  // cid, name, type, notnull, dflt_value, pk
      auto columnName = std::get<std::string>(columns.Column(1));
      SqlValue type = columns.Column(2);
      auto* typeText = std::get_if<std::string>(&type);
      info.columns.push_back({columnName, KindOfDeclaredType(typeText ? *typeText : "")});
      if (std::get<std::int64_t>(columns.Column(5)) > 0) {
        ++keyColumns;
        if (typeText && sqlite3_stricmp(typeText->c_str(), "INTEGER") == 0) key = columnName;
      }
    }
    columns.Reset();
    if (info.isTable && keyColumns == 1) info.integerKey = key;
    Statement& keys = Prepare("PRAGMA foreign_key_list(" + quoted + ")");
    keys.Bind({});
    while (keys.Step()) {  // id, seq, table, from, to, ...
      SqlValue to = keys.Column(4);
      info.foreignKeys.push_back({std::get<std::string>(keys.Column(3)),
                                  std::get<std::string>(keys.Column(2)),
                                  IsSqlNull(to) ? std::string() : std::get<std::string>(to)});
    }
    keys.Reset();
    return info;
  }

  std::int64_t LastRowId() override { return sqlite3_last_insert_rowid(db_); }

  std::int64_t ReserveKey(const SourceInfo& table) override {
    bool ownTransaction = sqlite3_get_autocommit(db_) != 0;
    if (ownTransaction) Begin();
    try {
      std::string quoted = Quoted(table.name);
      Statement& next = Prepare(
          "SELECT max(coalesce((SELECT seq FROM sqlite_sequence WHERE name = ?1), 0), "
          "coalesce((SELECT max(rowid) FROM " +
          quoted + "), 0)) + 1");
      next.Bind({table.name});
      next.Step();
      std::int64_t key = std::get<std::int64_t>(next.Column(0));
      next.Reset();
      if (Execute("UPDATE sqlite_sequence SET seq = ?1 WHERE name = ?2", {key, table.name}) == 0) {
        Execute("INSERT INTO sqlite_sequence (name, seq) VALUES (?1, ?2)", {table.name, key});
      }
      if (ownTransaction) Commit();
      return key;
    } catch (...) {
      if (ownTransaction) Rollback();
      throw;
    }
  }

  void Begin() override { Execute("BEGIN IMMEDIATE", {}); }
  void Commit() override { Execute("COMMIT", {}); }
  void Rollback() override {
    if (!sqlite3_get_autocommit(db_)) Execute("ROLLBACK", {});
  }

 private:
  sqlite3* db_ = nullptr;
  std::unordered_map<std::string, std::unique_ptr<SqliteStatement>> statements_;
};

}  // namespace

std::shared_ptr<Connection> OpenSqliteConnection(const std::filesystem::path& file) {
  return std::make_shared<SqliteConnection>(file);
}

}  // namespace brindlewayProj::store
