// Backend failures in the store's words: each BackendError becomes the platform::Error of its
// kind, with what the core knows of the statement added (which table a reference needs).
#pragma once

#include <vector>

#include "dataaccess/dao_session.h"
#include <brindleway/error.h>
#include "store/backend.h"

namespace brindlewayProj::dao::internal {

// What was being written when a backend call failed; all optional.
struct WriteContext {
  Session* session = nullptr;
  const store::SourceInfo* table = nullptr;
  const std::vector<store::ColumnInfo>* columns = nullptr;  // the columns of `values`
  const std::vector<store::SqlValue>* values = nullptr;     // the row being stored
  bool deleting = false;
};

// The store's error of a backend failure, keeping the engine's own code and message.
platform::Error Translate(const store::BackendError& failure, const WriteContext& context = {});

// Runs `call`, turning a BackendError into the store's platform::Error.
template <class Call>
auto Guarded(Call&& call, const WriteContext& context = {}) -> decltype(call()) {
  try {
    return call();
  } catch (const store::BackendError& failure) {
    throw Translate(failure, context);
  }
}

// Runs `call`; a failure leaving it names `query` as the text that failed.
template <class Call>
auto WithQuery(const String& query, Call&& call) -> decltype(call()) {
  try {
    return call();
  } catch (platform::Error& failure) {
    failure.SetQuery(query);
    throw;
  }
}

}  // namespace brindlewayProj::dao::internal
