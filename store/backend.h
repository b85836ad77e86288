// The one interface between the data-access core and a storage backend. A backend opens a
// connection per file; a connection prepares statements (cached by SQL text, which depends
// only on a statement's shape), runs transactions and describes its tables and queries.
// Failures come as BackendError with a kind the core maps to its own error numbers, and the
// backend's own message.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
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
  kForeignKey,    // a reference the table does not accept
  kNotNull,       // a required field without value; `detail` names the column
  kUnique,        // a duplicate key
  kNotADatabase,  // the file is no database
  kCantOpen,      // the file cannot be opened
  kOther,
};

class BackendError : public std::runtime_error {
 public:
  BackendError(FailureKind kind, const std::string& message, std::string detail = {})
      : std::runtime_error(message), kind_(kind), detail_(std::move(detail)) {}
  FailureKind Kind() const { return kind_; }
  const std::string& Detail() const { return detail_; }

 private:
  FailureKind kind_;
  std::string detail_;
};

// A prepared statement. Use: Bind, Step until it answers false, read Column while a row
// stands; Reset before the next use (Bind resets too).
class Statement {
 public:
  virtual ~Statement() = default;
  virtual const std::vector<ColumnInfo>& Columns() const = 0;
  // Binds the values to the placeholders 1..n after a reset.
  virtual void Bind(const std::vector<SqlValue>& values) = 0;
  // Advances to the next row: true while a row stands.
  virtual bool Step() = 0;
  virtual SqlValue Column(int index) const = 0;
  virtual void Reset() = 0;
};

class Connection {
 public:
  virtual ~Connection() = default;
  // The statement for `sql`, prepared on first use and kept by the connection.
  virtual Statement& Prepare(const std::string& sql) = 0;
  // Runs a statement to its end and answers the rows it changed (not counting cascades).
  virtual long long Execute(const std::string& sql, const std::vector<SqlValue>& values) = 0;
  // The table or stored query of that name, in any case; empty when there is none.
  virtual std::optional<SourceInfo> Describe(const std::string& name) = 0;
  // The row id of the row the last insert added.
  virtual std::int64_t LastRowId() = 0;
  // Takes the next automatic key of `table` (an autoincrement table) for the caller, so that
  // no other writer gets it: inside the open transaction, or in a short one of its own.
  virtual std::int64_t ReserveKey(const SourceInfo& table) = 0;
  // A write transaction that waits for other writers up to the busy timeout.
  virtual void Begin() = 0;
  virtual void Commit() = 0;
  // Ends the transaction; harmless when the backend has already ended it after a failure.
  virtual void Rollback() = 0;
};

// Opens an existing store file for reading and writing, shared with other connections.
// Raises BackendError kCantOpen (also for a missing file) or kNotADatabase.
std::shared_ptr<Connection> OpenConnection(const std::filesystem::path& file);

// Test-only hook: replaces how connections are opened (to wrap them in a fault injector);
// nullptr restores the embedded backend.
using ConnectionOpener = std::function<std::shared_ptr<Connection>(const std::filesystem::path&)>;
void SetConnectionOpenerForTesting(ConnectionOpener opener);

}  // namespace brindlewayProj::store
