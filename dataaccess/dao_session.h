// One store file open in one workspace: the backend connection shared by every Database and
// Recordset on that file, the descriptions of its tables and queries, and its part in the
// workspace's transaction.
//
// A workspace's transaction is a count of levels (BeginTrans opens one, CommitTrans and
// Rollback end the innermost). No store is touched by BeginTrans itself: a session joins at
// its first statement inside the transaction, taking the store's write lock then (waiting for
// other writers up to the busy timeout) and opening one savepoint per nested level. So a lock
// conflict fails the first Edit, AddNew or read inside the transaction, which is open already
// and can be rolled back; and the rows read inside it cannot change before they are written.
//
//   no transaction --BeginTrans--> level 1 --BeginTrans--> level 2 ...
//        ^                            |  CommitTrans / Rollback end the innermost level
//        +----------------------------+
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include <brindleway/types.h>
#include "store/backend.h"

namespace brindlewayProj::dao::internal {

class Session;

// Raises errWrongThread unless the calling thread is `owner`.
void CheckThread(std::thread::id owner);

// A workspace's transaction, shared with the sessions of its files.
struct Transaction {
  int depth = 0;  // levels open
  // The sessions whose store transaction began, held until the outermost level ends.
  std::vector<std::shared_ptr<Session>> joined;
};

class Session : public std::enable_shared_from_this<Session> {
 public:
  Session(std::shared_ptr<store::Connection> connection, String path,
          std::shared_ptr<Transaction> transaction);

  // The thread whose workspace opened the file; no other may use it.
  std::thread::id Owner() const { return owner_; }
  // The connection, first brought up to the workspace's transaction level.
  store::Connection& Connection();
  // The path as the caller gave it, for messages.
  const String& Path() const { return path_; }
  // The table or stored query of that name (any case), or nullptr; cached.
  const store::SourceInfo* Describe(const std::string& name);

  // The transaction levels open on this store.
  int Level() const { return level_; }
  // End the innermost level on this store. Rollback moves the generation on, so that an edit
  // begun inside the rolled-back level can no longer be stored.
  void Commit();
  void Rollback();
  std::uint64_t Generation() const { return generation_; }

  // Moves on whenever rows read through this session may no longer be as stored: at each write
  // through it (NoteWrite) and whenever a transaction level begins or ends on it.
  std::uint64_t Stamp() const { return stamp_; }
  void NoteWrite() { ++stamp_; }
  // Whether rows read under `stamp` are still as stored: inside a transaction, whose write lock
  // keeps other writers out, while nothing was written through this session since.
  bool RowsCurrent(std::uint64_t stamp) const { return level_ > 0 && stamp == stamp_; }

 private:
  const std::thread::id owner_ = std::this_thread::get_id();
  std::shared_ptr<store::Connection> connection_;
  String path_;
  std::shared_ptr<Transaction> transaction_;
  int level_ = 0;
  std::unordered_map<std::string, std::optional<store::SourceInfo>> sources_;
  std::uint64_t generation_ = 0;
  std::uint64_t stamp_ = 0;
};

}  // namespace brindlewayProj::dao::internal
