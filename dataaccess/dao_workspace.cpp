// The engine, its default workspace, and the workspace's files and transactions.
#include <sys/stat.h>

#include "dataaccess/dao_failures.h"
#include "dataaccess/dao_impl.h"
#include "platform/paths.h"
#include "store/errors.h"
#include "store/store_name.h"

namespace brindlewayProj::dao {
namespace {

// The store a name stands for, and the key of its session: a connection URI as it is, a file
// by its canonical path. A file must exist and hold something.
std::filesystem::path StoreOf(const String& name) {
  if (name.empty()) throw store::EmptyPath();
  if (store::IsConnectionUri(name)) return std::filesystem::path(name);
  std::filesystem::path file = platform::ToHostPath(name);
  std::error_code failure;
  auto status = std::filesystem::status(file, failure);
  if (!std::filesystem::exists(status)) throw store::FileNotFound(name);
  if (!std::filesystem::is_regular_file(status) || std::filesystem::file_size(file, failure) == 0) {
    throw store::UnrecognizedFormat(name);
  }
  return file;
}

// The open session of a store in the workspace, or a new one.
std::shared_ptr<internal::Session> SessionFor(Workspace::Impl& workspace, const String& name) {
  std::filesystem::path file = StoreOf(name);
  std::error_code failure;
  auto key = store::IsConnectionUri(name) ? file : std::filesystem::weakly_canonical(file, failure);
  if (failure) key = file;
  if (auto existing = workspace.sessions[key].lock()) return existing;
  std::shared_ptr<store::Connection> connection;
  try {
    connection = store::OpenConnection(file);
  } catch (const store::BackendError& error) {
    if (error.Kind() == store::FailureKind::kNotADatabase) throw store::UnrecognizedFormat(name);
    if (error.Kind() == store::FailureKind::kCantOpen) throw store::FileNotFound(name);
    if (error.Kind() == store::FailureKind::kCantConnect) {
      throw store::CannotConnect(store::WithoutPassword(name), error.what());
    }
    throw internal::Translate(error);
  }
  auto session =
      std::make_shared<internal::Session>(std::move(connection), name, workspace.transaction);
  workspace.sessions[key] = session;
  return session;
}

// The sessions that joined the transaction and are at its innermost level.
std::vector<std::shared_ptr<internal::Session>> AtInnermostLevel(
    const internal::Transaction& transaction) {
  std::vector<std::shared_ptr<internal::Session>> sessions;
  for (const auto& session : transaction.joined) {
    if (session->Level() == transaction.depth) sessions.push_back(session);
  }
  return sessions;
}

// Ends the innermost level; the outermost lets go of the sessions that joined.
void EndLevel(internal::Transaction& transaction) {
  if (--transaction.depth == 0) transaction.joined.clear();
}

}  // namespace

Workspace::Workspace(std::shared_ptr<Impl> impl) : impl_(std::move(impl)) {}

std::shared_ptr<Database> Workspace::OpenDatabase(const String& name) {
  internal::CheckThread(impl_->owner);
  auto impl = std::make_shared<Database::Impl>();
  impl->session = SessionFor(*impl_, name);
  impl->name = name;
  return std::make_shared<Database>(std::move(impl));
}

void Workspace::BeginTrans() {
  internal::CheckThread(impl_->owner);
  ++impl_->transaction->depth;
}

void Workspace::CommitTrans(Long /*options*/) {
  internal::CheckThread(impl_->owner);
  auto& transaction = *impl_->transaction;
  if (transaction.depth == 0) throw store::NoTransaction();
  // A failed commit leaves the level open, for the caller's Rollback.
  for (auto& session : AtInnermostLevel(transaction)) session->Commit();
  EndLevel(transaction);
}

void Workspace::Rollback() {
  internal::CheckThread(impl_->owner);
  auto& transaction = *impl_->transaction;
  if (transaction.depth == 0) throw store::NoTransaction();
  auto sessions = AtInnermostLevel(transaction);
  EndLevel(transaction);
  std::optional<platform::Error> first;
  for (auto& session : sessions) {
    try {
      session->Rollback();
    } catch (const platform::Error& failure) {
      if (!first) first = failure;
    }
  }
  if (first) throw *first;
}

Engine::Engine(std::shared_ptr<Impl> impl) : impl_(std::move(impl)) {}

std::shared_ptr<Workspace> Engine::Workspaces(Integer index) {
  if (index != 0) throw store::ItemNotFound();
  return impl_->defaultWorkspace;
}

Engine& DBEngine() {
  thread_local Engine engine(std::make_shared<Engine::Impl>(
      Engine::Impl{std::make_shared<Workspace>(std::make_shared<Workspace::Impl>())}));
  return engine;
}

}  // namespace brindlewayProj::dao
