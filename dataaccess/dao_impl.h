// The state behind the object model's classes, shared by the files that implement them.
//
// A Recordset's states:
//
//   open, on a row  --MoveNext past the last-->  open, behind the last row (Eof)
//        |  Edit / AddNew                              ^
//        v                                             | Update stores, MoveX drops the edit
//   editing (buffer) --Update--> open, on a row   --Close or last reference--> closed
//
// A snapshot reads all its rows when it opens: a fixed picture. A dynaset reads only what it
// is moved to, and one row ahead: its first two rows at opening, one more at each MoveNext, the
// rest at MoveLast; until then it keeps its statement (the cursor) and steps it on demand. The
// row ahead lets the cursor of a one-row query end at once, so that it holds no read snapshot
// of the store while the row is edited. A dynaset over a whole table reads its first rows when
// they are first asked for, not at opening: adding a row needs none of them, and a server store
// then opens no cursor for it. Rows added before that join the picture as they would have.
//
// A Workspace's transaction is a count of nested levels (see dao_session.h for how each store
// file joins it).
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <vector>

#include <brindleway/dao.h>
#include "dataaccess/dao_session.h"

namespace brindlewayProj::dao {

struct Recordset::Impl {
  enum class EditMode { kNone, kEdit, kAddNew };

  std::shared_ptr<internal::Session> session;  // nullptr once closed
  String source;  // the query text or table name it was opened on, for failures
  std::shared_ptr<store::Statement> cursor;     // a dynaset's rows not read yet; null when all are
  std::shared_ptr<const std::vector<store::ColumnInfo>> statementColumns;
  std::size_t firstColumn = 0;  // 1 when the statement's column 0 is the row id
  std::size_t width = 0;
  bool snapshot = true;
  const store::SourceInfo* table = nullptr;  // the table a dynaset changes; nullptr if none

  std::vector<store::SqlValue> values;  // the picture, row after row, `width` values each
  std::vector<store::RowId> rowIds;     // a dynaset's row identities, one per row
  std::vector<store::RowId> added;      // rows this dynaset added, not to be read again
  bool started = true;  // false while a whole table's first rows wait for their first need
  std::vector<store::AddedRow> addedUnstarted;  // rows added before that, to join the picture
  std::uint64_t readStamp = 0;          // the session's stamp when the statement ran
  std::size_t rowCount = 0;               // the rows read so far
  std::ptrdiff_t position = 0;  // -1 before the first row, rowCount behind the last
  std::size_t reached = 0;      // the rows reached so far (RecordCount)

  EditMode mode = EditMode::kNone;
  std::vector<store::SqlValue> buffer;    // the row under Edit or AddNew
  std::vector<store::SqlValue> original;  // the row as Edit found it
  std::vector<bool> changed;
  std::uint64_t editGeneration = 0;

  std::shared_ptr<dao::Fields> fields;  // made on first need, then reused

  const store::ColumnInfo& Column(std::size_t index) const {
    return (*statementColumns)[firstColumn + index];
  }
  // The position of the column of that name in any case; raises 3265 for an unknown name.
  std::size_t ColumnIndex(std::string_view name) const;
  // Raises 3420 once closed, errWrongThread on another thread than the session's.
  void CheckOpen() const;
  // CheckOpen, then ReadFirstRows.
  void CheckRows();
  // Reads the first rows if they are still waiting.
  void ReadFirstRows();
  // The value shown for a column of an open recordset (the caller checks): the edit buffer
  // while editing, else the current row; 3021 off the rows.
  const store::SqlValue& Shown(std::size_t column);
  // Runs the statement: a snapshot reads all its rows, a dynaset its first and keeps the
  // statement as its cursor; a dynaset over a whole table (`deferred`) leaves them waiting.
  void Load(std::shared_ptr<store::Statement> statement,
            const std::vector<store::SqlValue>& parameters, bool deferred);
  // Puts a row this dynaset added into the picture, behind the rows read (once they are).
  void Append(store::AddedRow row);
  void AddToPicture(store::AddedRow row);
  // Reads rows from the cursor until row `index` (from 0) is read or the rows end.
  void ReadThrough(std::size_t index);
  void ReadAll() { ReadThrough(static_cast<std::size_t>(-1)); }
  // Makes room in the picture for `rows` more rows; called when the next row would not fit.
  void MakeRoomFor(std::size_t rows);
  void DropEdit();
};

struct Field::Impl {
  std::weak_ptr<Recordset::Impl> recordset;
  std::size_t column = 0;
};

struct Fields::Impl {
  std::weak_ptr<Recordset::Impl> recordset;
  std::vector<std::shared_ptr<Field>> items;  // made on first need, one per column
};

struct Database::Impl {
  std::shared_ptr<internal::Session> session;  // nullptr once closed
  String name;
  Long recordsAffected = 0;
};

struct Workspace::Impl {
  const std::thread::id owner = std::this_thread::get_id();
  std::map<std::filesystem::path, std::weak_ptr<internal::Session>> sessions;
  std::shared_ptr<internal::Transaction> transaction = std::make_shared<internal::Transaction>();
};

struct Engine::Impl {
  std::shared_ptr<Workspace> defaultWorkspace;
};

}  // namespace brindlewayProj::dao
