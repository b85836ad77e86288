// The road of a PostgreSQL connection's requests to the server, one round trip at a time. The
// commands that open transaction levels (BEGIN with the write lock, SAVEPOINT) wait for the
// next request and travel with it, so that opening a level costs no round trip of its own and
// a level that ends unused costs nothing. Those commands are prepared once per connection.
#pragma once

#include <libpq-fe.h>

#include <initializer_list>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace brindlewayProj::store::postgres {

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
  // Queues the commands that open transaction level `level`, to go before the next request.
  void Open(int level, std::vector<std::string> commands);
  // Drops the queued opening of `level`, and of the levels inside it; whether it was queued,
  // that is, the level never reached the server.
  bool Forget(int level);
  // Whether a transaction is open on the server or waits to be opened.
  bool InTransaction() const;
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
  std::unordered_map<std::string, std::string> commands_;  // prepared: command -> name
};

}  // namespace brindlewayProj::store::postgres
