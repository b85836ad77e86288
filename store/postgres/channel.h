// The road of a PostgreSQL connection's requests to the server, one round trip at a time. The
// commands that open transaction levels (BEGIN with the write lock, SAVEPOINT) wait for the
// next request and travel with it, so that opening a level costs no round trip of its own and
// a level that ends unused costs nothing. Those commands are prepared once per connection.
#pragma once

#include <libpq-fe.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace brindlewayProj::store::postgres {

// A name on the server: `prefix` and a number ("s3").
std::string ServerName(std::string_view prefix, std::uint64_t number);

// One request: a prepared statement by name with its values, or the text of one command.
struct Request {
  const char* statement = nullptr;
  const char* sql = nullptr;
  int valueCount = 0;
  const char* const* values = nullptr;

  static Request Prepared(const char* name, int count, const char* const* values) {
    return {name, nullptr, count, values};
  }
  static Request Text(const char* sql) { return {nullptr, sql, 0, nullptr}; }
};

class Channel {
 public:
  explicit Channel(PGconn* db) : db_(db) {}

  PGconn* Db() const { return db_; }
  // Opens transaction level `level` (1: the transaction, then savepoints): its `commands` are
  // queued to go before the next request.
  void Open(int level, std::vector<std::string> commands);
  // Ends the innermost level, `level`, kept (committed, released) or not; answers whether it
  // never reached the server (its opening was still queued), so that nothing is to be sent.
  bool End(int level, bool kept);
  // Whether a transaction is open, on the server or waiting to be opened.
  bool InTransaction() const { return !levels_.empty(); }
  // The number of the innermost open level, what the server makes in it belongs to (a cursor,
  // a row's new place); 0 outside a transaction.
  std::uint64_t Level() const { return levels_.empty() ? 0 : levels_.back(); }
  // Whether what was made in level `level` still stands: the level is open, or was released
  // into one that is. A rolled-back level takes its cursors and changes with it.
  bool Holds(std::uint64_t level) const;
  // Sends the queued commands and then `requests` in one round trip, and answers the result of
  // the last request (the caller clears it). The first failure raises its BackendError and
  // the requests after it are not run. When a queued opening of the transaction failed (the
  // write lock was not had), the transaction is rolled back and its opening stays queued, to be
  // tried again with the next request.
  PGresult* Send(std::initializer_list<Request> requests);

 private:
  PGresult* SendPipelined(const std::vector<Request>& requests, std::size_t queued);
  // The name of the command `sql` prepared on the server, which prepares it on first use.
  const std::string& PreparedCommand(const std::string& sql);

  PGconn* db_;
  std::vector<std::pair<int, std::string>> queued_;  // level, command
  std::vector<std::uint64_t> levels_;                // the open levels' numbers, outermost first
  std::unordered_map<std::uint64_t, std::uint64_t> releasedInto_;  // savepoint -> its parent
  std::uint64_t levelsOpened_ = 0;
  std::unordered_map<std::string, std::string> commands_;  // prepared: command -> name
};

}  // namespace brindlewayProj::store::postgres
