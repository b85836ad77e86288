// One store file open in one workspace: the backend connection shared by every Database and
// Recordset on that file, the descriptions of its tables and queries, and its transaction.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include <brindleway/types.h>
#include "store/backend.h"

namespace brindlewayProj::dao::internal {

class Session {
 public:
  Session(std::shared_ptr<store::Connection> connection, String path);

  store::Connection& Connection() { return *connection_; }
  // The path as the caller gave it, for messages.
  const String& Path() const { return path_; }
  // The table or stored query of that name (any case), or nullptr; cached.
  const store::SourceInfo* Describe(const std::string& name);

  // Transaction of the workspace on this file. Rollback moves the generation on, so that an
  // edit begun inside the rolled-back transaction can no longer be stored.
  void Begin();
  void Commit();
  void Rollback();
  std::uint64_t Generation() const { return generation_; }

 private:
  std::shared_ptr<store::Connection> connection_;
  String path_;
  std::unordered_map<std::string, std::optional<store::SourceInfo>> sources_;
  std::uint64_t generation_ = 0;
};

}  // namespace brindlewayProj::dao::internal
