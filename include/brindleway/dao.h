// The DAO-style object model the component talks to: engine, workspace, database, recordset,
// fields. Every failure is a platform::Error in the store's words (the 3000 range). Objects are
// held by std::shared_ptr; releasing the last reference closes a Recordset (dropping an unstored
// edit) or a Database.
#pragma once

#include <memory>

#include <brindleway/export.h>
#include <brindleway/variant.h>

namespace brindlewayProj::dao {

inline constexpr Long dbOpenDynaset = 2;
inline constexpr Long dbOpenSnapshot = 4;
inline constexpr Long dbFailOnError = 128;
inline constexpr Long dbUpdateRegular = 1;

class BRINDLEWAY_API Field : public Object {
 public:
  String Name() const;
  // The value in the recordset's current row: Null for SQL NULL, otherwise the kind of the
  // column's declared type. Raises 3021 "No current record." off the rows.
  Variant Value() const;
  bool HasDefaultValue() const override { return true; }
  Variant DefaultValue() const override { return Value(); }

  struct Impl;
  explicit Field(std::shared_ptr<Impl> impl);

 private:
  std::shared_ptr<Impl> impl_;
};

class BRINDLEWAY_API Fields : public Object {
 public:
  Long Count() const;
  // By name, in any case; an unknown name raises 3265 "Item not found in this collection.".
  std::shared_ptr<Field> Item(const String& name) const;
  // By position from 0.
  std::shared_ptr<Field> Item(Long index) const;

  struct Impl;
  explicit Fields(std::shared_ptr<Impl> impl);

 private:
  std::shared_ptr<Impl> impl_;
};

class BRINDLEWAY_API Recordset : public Object {
 public:
  // The rows reached so far: 0 without rows, 1 right after opening, the total after MoveLast.
  Long RecordCount() const;
  bool Eof() const;
  bool Bof() const;
  void MoveFirst();
  void MoveLast(Long options = 0);
  void MoveNext();
  void MovePrevious();
  std::shared_ptr<dao::Fields> Fields() const;
  void Edit();
  void AddNew();
  // Writes `value` into the named field of the row under Edit or AddNew.
  void Collect(const String& name, const Variant& value);
  // Stores the row under Edit or AddNew.
  void Update(Long updateType = dbUpdateRegular, bool force = false);
  void Close();

  struct Impl;
  explicit Recordset(std::shared_ptr<Impl> impl);
  ~Recordset() override;  // releasing the last reference closes and drops an unstored edit

 private:
  std::shared_ptr<Impl> impl_;
};

class BRINDLEWAY_API Database : public Object {
 public:
  // Opens a query text or a table name as a snapshot or a dynaset.
  std::shared_ptr<Recordset> OpenRecordset(const String& name, Long type = dbOpenDynaset);
  // Runs a statement; with dbFailOnError all or nothing.
  void Execute(const String& query, Long options = 0);
  Long RecordsAffected() const;
  String Name() const;
  void Close();

  struct Impl;
  explicit Database(std::shared_ptr<Impl> impl);
  ~Database() override;

 private:
  std::shared_ptr<Impl> impl_;
};

class BRINDLEWAY_API Workspace : public Object {
 public:
  // Opens the store file at `name` (host path rules), shared, for reading and writing.
  std::shared_ptr<Database> OpenDatabase(const String& name);
  void BeginTrans();
  void CommitTrans(Long options = 0);
  void Rollback();

  struct Impl;
  explicit Workspace(std::shared_ptr<Impl> impl);

 private:
  std::shared_ptr<Impl> impl_;
};

class BRINDLEWAY_API Engine : public Object {
 public:
  // The engine's workspaces; 0 is the default workspace, which exists without being created.
  std::shared_ptr<Workspace> Workspaces(Integer index);

  struct Impl;
  explicit Engine(std::shared_ptr<Impl> impl);

 private:
  std::shared_ptr<Impl> impl_;
};

// The calling thread's engine, created on first need. Every thread has its own engine, and
// with it its own workspaces, connections, statements and transactions: nothing of the object
// model is shared between threads. An object of the model is used on the thread whose engine
// made it; a call from another thread raises errWrongThread and touches nothing.
BRINDLEWAY_API Engine& DBEngine();

}  // namespace brindlewayProj::dao
