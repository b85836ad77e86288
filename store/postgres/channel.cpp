// Requests to the PostgreSQL server: alone, or queued commands and requests in one pipeline.
#include "store/postgres/channel.h"

#include <algorithm>

#include "store/postgres/errors.h"

namespace brindlewayProj::store::postgres {
namespace {

PGresult* Exec(PGconn* db, const Request& request) {
  return request.statement ? PQexecPrepared(db, request.statement, request.valueCount,
                                            request.values, nullptr, nullptr, 0)
                           : PQexecParams(db, request.sql, 0, nullptr, nullptr, nullptr,
                                          nullptr, 0);
}

bool Queue(PGconn* db, const Request& request) {
  return request.statement ? PQsendQueryPrepared(db, request.statement, request.valueCount,
                                                 request.values, nullptr, nullptr, 0)
                           : PQsendQueryParams(db, request.sql, 0, nullptr, nullptr, nullptr,
                                               nullptr, 0);
}

}  // namespace

std::string ServerName(std::string_view prefix, std::uint64_t number) {
  std::string name(prefix);
  name += std::to_string(number);
  return name;
}

void Channel::Open(int level, std::vector<std::string> commands) {
  for (std::string& command : commands) queued_.emplace_back(level, std::move(command));
  levels_.resize(static_cast<std::size_t>(level - 1));
  levels_.push_back(++levelsOpened_);
}

bool Channel::End(int level, bool kept) {
  auto first = std::find_if(queued_.begin(), queued_.end(),
                            [&](const auto& command) { return command.first >= level; });
  const bool wasQueued = first != queued_.end() && first->first == level;
  queued_.erase(first, queued_.end());
  levels_.resize(static_cast<std::size_t>(level));
  if (kept && levels_.size() > 1) releasedInto_[levels_.back()] = levels_[levels_.size() - 2];
  levels_.pop_back();
  if (levels_.empty()) releasedInto_.clear();
  return wasQueued;
}

bool Channel::Holds(std::uint64_t level) const {
  while (level != 0) {
    if (std::find(levels_.begin(), levels_.end(), level) != levels_.end()) return true;
    auto parent = releasedInto_.find(level);
    level = parent == releasedInto_.end() ? 0 : parent->second;
  }
  return false;
}

PGresult* Channel::Send(std::initializer_list<Request> requests) {
  if (queued_.empty() && requests.size() == 1) {
    PGresult* result = Exec(db_, *requests.begin());
    if (!Succeeded(result)) Fail(db_, result);
    return result;
  }
  std::vector<Request> all;
  for (const auto& command : queued_) {
    all.push_back(Request::Prepared(PreparedCommand(command.second).c_str(), 0, nullptr));
  }
  all.insert(all.end(), requests.begin(), requests.end());
  return SendPipelined(all, queued_.size());
}

const std::string& Channel::PreparedCommand(const std::string& sql) {
  auto found = commands_.find(sql);
  if (found != commands_.end()) return found->second;
  std::string name = ServerName("t", commands_.size());
  PGresult* prepared = PQprepare(db_, name.c_str(), sql.c_str(), 0, nullptr);
  if (!Succeeded(prepared)) Fail(db_, prepared);
  PQclear(prepared);
  return commands_.emplace(sql, std::move(name)).first->second;
}

// Each request answers one result and then none; the pipeline ends with its sync. After a
// failure the server skips the rest, which answer PGRES_PIPELINE_ABORTED.
PGresult* Channel::SendPipelined(const std::vector<Request>& requests, std::size_t queued) {
  if (!PQenterPipelineMode(db_)) Fail(db_, nullptr);
  bool sent = true;
  for (const Request& request : requests) sent = sent && Queue(db_, request);
  if (!sent || !PQpipelineSync(db_)) {
    PQexitPipelineMode(db_);
    Fail(db_, nullptr);  // the connection broke
  }
  PGresult* failed = nullptr;
  std::size_t failedAt = requests.size();
  PGresult* last = nullptr;
  for (std::size_t i = 0; i < requests.size(); ++i) {
    PGresult* result = PQgetResult(db_);
    if (result) PQclear(PQgetResult(db_));  // the end of this request's results
    if (failedAt == requests.size() && !Succeeded(result)) {
      failed = result;  // none when the connection broke
      failedAt = i;
    } else if (i + 1 == requests.size() && failedAt == requests.size()) {
      last = result;
    } else {
      PQclear(result);
    }
  }
  PQclear(PQgetResult(db_));  // the sync
  PQexitPipelineMode(db_);
  if (failedAt == requests.size()) {
    queued_.clear();
    return last;
  }
  if (failedAt >= queued) {
    queued_.clear();
  } else if (queued_.front().first == 1) {
    PQclear(PQexec(db_, "ROLLBACK"));
  }
  Fail(db_, failed);
}

}  // namespace brindlewayProj::store::postgres
