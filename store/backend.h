// The one interface between the data-access core and a storage engine. Each engine lives in
// its own folder below store/ (store/sqlite/) and implements this and nothing else; the core
// and the dialect's translation write no SQL of their own beyond what SqlSyntax spells.
//
// A backend opens a connection per store; a connection prepares statements (cached by SQL
// text, which depends only on a statement's shape, every value being bound), runs
// transactions, describes its tables and queries, and reads, updates and inserts single rows
// by their identity. Failures come as BackendError with a kind the core maps to its own error
// numbers, and the engine's own message.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "store/sql_value.h"

namespace brindlewayProj::store {

// The kind of value a column's declared type asks for; kUnknown follows the stored value.
enum class DeclaredKind { kUnknown, kLong, kInteger, kDouble, kDate, kText };

// INTEGER -> kLong, SMALLINT -> kInteger, DATETIME/DATE -> kDate, TEXT/CHAR -> kText,
// CURRENCY/REAL/DOUBLE/FLOAT/NUMERIC -> kDouble, anything else (or none) -> kUnknown.
DeclaredKind KindOfDeclaredType(std::string_view declaredType);

struct ColumnInfo {
  std::string name;
  DeclaredKind kind = DeclaredKind::kUnknown;
};

struct ForeignKey {
  std::string column;
  std::string parentTable;
  std::string parentColumn;
};

// What the core needs to know of a table or stored query.
struct SourceInfo {
  std::string name;  // as the store spells it
  bool isTable = false;
  bool autoIncrement = false;  // its integer key is never handed out twice
  std::string integerKey;      // the column that is the row id, empty when none
  std::vector<ColumnInfo> columns;
  std::vector<ForeignKey> foreignKeys;
};

enum class FailureKind {
  kBusy,          // locked by another connection past the busy timeout
  kFull,          // the disk is full
  kReadOnly,      // the file cannot be written
  kForeignKey,    // a reference the table does not accept; `detail` names the parent table
                  // when the engine tells it
  kNotNull,       // a required field without value; `detail` names the column
  kUnique,        // a duplicate key
  kNotADatabase,  // the file is no database
  kCantOpen,      // the file cannot be opened
  kCantConnect,   // the database server cannot be reached or refuses the connection
  kOther,
};

class BackendError : public std::runtime_error {
 public:
  // `message` and `engineCode` are the engine's own; `detail` what the kind needs (a column).
  BackendError(FailureKind kind, const std::string& message, std::string detail = {},
               int engineCode = 0)
      : std::runtime_error(message),
        kind_(kind),
        detail_(std::move(detail)),
        engineCode_(engineCode) {}
  FailureKind Kind() const { return kind_; }
  const std::string& Detail() const { return detail_; }
  int EngineCode() const { return engineCode_; }

 private:
  FailureKind kind_;
  std::string detail_;
  int engineCode_;
};

// How an engine spells what differs between engines, for the dialect's translation.
class SqlSyntax {
 public:
  virtual ~SqlSyntax() = default;
  // `name` quoted as an identifier, inner quotes escaped.
  virtual void AppendQuotedName(std::string& sql, std::string_view name) const {
    sql += '"';  // standard SQL: double quotes, a quote inside doubled
    for (char c : name) {
      if (c == '"') sql += '"';
      sql += c;
    }
    sql += '"';
  }
  // The placeholder of the `number`-th bound value, counted from 1.
  virtual void AppendPlaceholder(std::string& sql, std::size_t number) const = 0;
  // The expression that identifies a table's row, selected as column 0 of a dynaset.
  virtual std::string_view RowIdentity() const = 0;
  // What follows a sort key so that text sorts without regard to case.
  virtual std::string_view CaseInsensitiveOrder() const = 0;
  // The comparison, spaced, that holds for equal values and for Null against Null.
  virtual std::string_view NullSafeEquals() const = 0;
  // What follows a sort key's direction so that Null sorts as the smallest value: first going
  // up, last going down.
  virtual std::string_view NullsAsSmallest(bool descending) const = 0;
  // Whether SELECT DISTINCT gives each row where its first copy stands (else the dialect keeps
  // that order itself, numbering the rows).
  virtual bool DistinctKeepsFirstCopies() const = 0;
  // The pattern operator that matches without regard to case (`_` and `%` wildcards, `\`
  // as escape).
  virtual std::string_view CaseInsensitiveLike() const = 0;
};

// The identity of one table row as the engine gives it (SQLite: the rowid; PostgreSQL: the
// tuple's ctid as text).
using RowId = SqlValue;

// A row just added: its identity, and its values as stored (defaults filled in); no values
// when the row cannot be found again.
struct AddedRow {
  RowId id;
  std::optional<std::vector<SqlValue>> values;
};

// One column's value in a row being written or compared.
struct ColumnValue {
  std::string_view column;
  const SqlValue& value;
};

// A prepared statement. Use: Bind, Step until it answers false, read Column while a row
// stands; Reset before the next use (Bind resets too). A statement is held by one user at a
// time (see Connection::Prepare), so a recordset may keep stepping it across calls.
class Statement {
 public:
  virtual ~Statement() = default;
  // The result's columns; shared, so that a reader may keep them past the statement.
  virtual std::shared_ptr<const std::vector<ColumnInfo>> Columns() const = 0;
  // Binds the values to the placeholders 1..n after a reset.
  virtual void Bind(const std::vector<SqlValue>& values) = 0;
  // Advances to the next row: true while a row stands.
  virtual bool Step() = 0;
  virtual SqlValue Column(int index) const = 0;
  // The rows after the current one that the statement holds already, so that a reader can make
  // room for them at once; 0 when the engine reads them one by one.
  virtual std::size_t RowsReady() const { return 0; }
  virtual void Reset() = 0;
};

class Connection {
 public:
  virtual ~Connection() = default;
  // The statement for `sql`, prepared on first use and kept by the connection for reuse; no
  // one else steps it until the returned holder goes, which resets it. When the kept one is
  // held already, a fresh statement serves this holder alone.
  virtual std::shared_ptr<Statement> Prepare(const std::string& sql) = 0;
  // Runs a statement to its end and answers the rows it changed (not counting cascades).
  virtual long long Execute(const std::string& sql, const std::vector<SqlValue>& values) = 0;
  // The table or stored query of that name, in any case; empty when there is none.
  virtual std::optional<SourceInfo> Describe(const std::string& name) = 0;
  virtual const SqlSyntax& Syntax() const = 0;

  // The values of `columns` in the row `row` of `table`; nullopt when that row is gone.
  virtual std::optional<std::vector<SqlValue>> ReadRow(const SourceInfo& table,
                                                       std::span<const std::string> columns,
                                                       const RowId& row) = 0;
  // Writes `changes` into the row `row` of `table`, but only while the row still holds every
  // value of `expected` (empty: no such test; Null compares equal to Null). Answers the rows
  // written: 0 when the row is gone or was changed by someone else.
  virtual long long UpdateRow(const SourceInfo& table, const RowId& row,
                              std::span<const ColumnValue> changes,
                              std::span<const ColumnValue> expected) = 0;
  // Adds a row of `table` holding `values` (the other columns take their defaults) and answers
  // its identity and what its `columns` hold as stored.
  virtual AddedRow InsertRow(const SourceInfo& table, std::span<const ColumnValue> values,
                             std::span<const std::string> columns) = 0;
  // Whether the parent table of `key` has a row whose referenced column (its identity when
  // the reference names none) holds `value`.
  virtual bool ParentRowExists(const ForeignKey& key, const SqlValue& value) = 0;
  // The key of `table`'s next row, for a table whose integer key the engine numbers itself
  // (SourceInfo::integerKey). The key exists from this call on and is the one the caller then
  // stores; it is never handed out twice by this connection, also when the transaction that
  // took it is rolled back, and where the engine keeps a sequence (AUTOINCREMENT), it is taken
  // from the sequence inside the open transaction, or in a short transaction of its own.
  virtual std::int64_t ReserveKey(const SourceInfo& table) = 0;
  // Transaction levels: level 1 is the transaction, which takes the store's write lock and
  // waits for other writers up to the busy timeout; each higher level is a savepoint inside
  // it. Commit ends the level keeping its changes, Rollback undoes them. Rollback is harmless
  // when the engine has already ended the transaction after a failure.
  virtual void Begin(int level) = 0;
  virtual void Commit(int level) = 0;
  virtual void Rollback(int level) = 0;
};

// Opens an existing store for reading and writing, shared with other connections, on the
// engine its name belongs to (see store_name.h): a connection URI on PostgreSQL, a file path on
// SQLite. Raises BackendError kCantOpen (also for a missing file), kNotADatabase or
// kCantConnect (whose message never shows a password).
std::shared_ptr<Connection> OpenConnection(const std::filesystem::path& file);

// OpenConnection on the engine itself, past the test hook below: what a test's opener wraps.
std::shared_ptr<Connection> OpenEngineConnection(const std::filesystem::path& file);

// Test-only hook: replaces how connections are opened (to wrap them in a fault injector);
// nullptr restores the embedded backend.
using ConnectionOpener = std::function<std::shared_ptr<Connection>(const std::filesystem::path&)>;
void SetConnectionOpenerForTesting(ConnectionOpener opener);

}  // namespace brindlewayProj::store
