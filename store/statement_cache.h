// A connection's prepared statements, kept by their text and leased to one user at a time: a
// statement asked for while its kept copy is still leased (to a dynaset's cursor, say) is made
// afresh for that one use.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "store/backend.h"

namespace brindlewayProj::store {

// EngineStatement is the engine's Statement with a `held` flag that the cache alone sets.
template <class EngineStatement>
class StatementCache {
 public:
  // The statement for `sql`: the kept one, made by make(true) the first time, or while that
  // one is leased a fresh one made by make(false). `make` answers a unique_ptr<EngineStatement>.
  template <class Make>
  std::shared_ptr<Statement> Lease(const std::string& sql, Make make) {
    auto found = kept_.find(sql);
    if (found == kept_.end()) found = kept_.emplace(sql, make(true)).first;
    EngineStatement* kept = found->second.get();
    if (kept->held) return std::shared_ptr<Statement>(make(false));
    kept->held = true;
    return std::shared_ptr<Statement>(kept, [](Statement* statement) {
      statement->Reset();
      static_cast<EngineStatement*>(statement)->held = false;
    });
  }

  std::size_t Size() const { return kept_.size(); }
  void Clear() { kept_.clear(); }

 private:
  std::unordered_map<std::string, std::unique_ptr<EngineStatement>> kept_;
};

}  // namespace brindlewayProj::store
