// The state behind the object model's classes, shared by the files that implement them.
//
// A Recordset's states:
//
//   open, on a row  --MoveNext past the last-->  open, behind the last row (Eof)
//        |  Edit / AddNew                              ^
//        v                                             | Update stores, MoveX drops the edit
//   editing (buffer) --Update--> open, on a row   --Close or last reference--> closed
//
// A Workspace is either without a transaction or inside one; BeginTrans and CommitTrans or
// Rollback move between the two, on every file the workspace holds.
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
  const std::vector<store::ColumnInfo>* statementColumns = nullptr;
  std::size_t firstColumn = 0;  // 1 when the statement's column 0 is the row id
  std::size_t width = 0;
  bool snapshot = true;
  const store::SourceInfo* table = nullptr;  // the table a dynaset changes; nullptr if none

  std::vector<store::SqlValue> values;  // the picture, row after row, `width` values each
  std::vector<store::RowId> rowIds;     // a dynaset's row identities, one per row
  std::size_t rowCount = 0;
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
  // Raises 3420 once closed.
  void CheckOpen() const;
  // The value shown for a column: the edit buffer while editing, else the current row; 3021
  // off the rows.
  const store::SqlValue& Shown(std::size_t column) const;
  // Runs the statement and keeps all its rows.
  void Load(store::Statement& statement, const std::vector<store::SqlValue>& parameters);
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
  std::map<std::filesystem::path, std::weak_ptr<internal::Session>> sessions;
  // The files of the open transaction, held so that it ends on each of them.
  std::vector<std::shared_ptr<internal::Session>> inTransaction;
  bool transaction = false;
};

struct Engine::Impl {
  std::shared_ptr<Workspace> defaultWorkspace;
};

}  // namespace brindlewayProj::dao
