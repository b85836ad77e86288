// The shared connection of one store file in one workspace, and its part in the transaction.
#include "dataaccess/dao_session.h"

#include "dataaccess/dao_failures.h"
#include "platform/ascii.h"

namespace brindlewayProj::dao::internal {

void CheckThread(std::thread::id owner) {
  if (owner != std::this_thread::get_id()) platform::Raise(platform::errWrongThread);
}

Session::Session(std::shared_ptr<store::Connection> connection, String path,
                 std::shared_ptr<Transaction> transaction)
    : connection_(std::move(connection)),
      path_(std::move(path)),
      transaction_(std::move(transaction)) {}

store::Connection& Session::Connection() {
  while (level_ < transaction_->depth) {
    Guarded([&] { connection_->Begin(level_ + 1); }, WriteContext{this});
    if (level_ == 0) transaction_->joined.push_back(shared_from_this());
    ++level_;
    ++stamp_;
  }
  return *connection_;
}

const store::SourceInfo* Session::Describe(const std::string& name) {
  std::string key = platform::ToAsciiLower(name);
  auto found = sources_.find(key);
  if (found == sources_.end()) {
    auto info = Guarded([&] { return Connection().Describe(name); }, WriteContext{this});
    found = sources_.emplace(std::move(key), std::move(info)).first;
  }
  return found->second ? &*found->second : nullptr;
}

void Session::Commit() {
  Guarded([&] { connection_->Commit(level_); });
  --level_;
  ++stamp_;
}

void Session::Rollback() {
  ++generation_;
  ++stamp_;
  --level_;
  Guarded([&] { connection_->Rollback(level_ + 1); });
}

}  // namespace brindlewayProj::dao::internal
