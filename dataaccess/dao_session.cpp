// The shared connection of one store file in one workspace.
#include "dataaccess/dao_session.h"

#include "dataaccess/dao_failures.h"
#include "platform/ascii.h"

namespace brindlewayProj::dao::internal {

Session::Session(std::shared_ptr<store::Connection> connection, String path)
    : connection_(std::move(connection)), path_(std::move(path)) {}

const store::SourceInfo* Session::Describe(const std::string& name) {
  std::string key = platform::ToAsciiLower(name);
  auto found = sources_.find(key);
  if (found == sources_.end()) {
    WriteContext context{this};
    auto info = Guarded([&] { return connection_->Describe(name); }, context);
    found = sources_.emplace(std::move(key), std::move(info)).first;
  }
  return found->second ? &*found->second : nullptr;
}

void Session::Begin() {
  Guarded([&] { connection_->Begin(); });
}

void Session::Commit() {
  Guarded([&] { connection_->Commit(); });
}

void Session::Rollback() {
  ++generation_;
  Guarded([&] { connection_->Rollback(); });
}

}  // namespace brindlewayProj::dao::internal
