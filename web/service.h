// The HTTP JSON service over the component, with the storefront page: cpp-httplib's server
// with the routes of routes.h, limits on what a client may send, and one component object
// per worker thread (see worker_pool.h). While a service lives, message boxes are answered at
// once without being shown: no one is there to answer them, and a worker whose store cannot
// be opened answers 503 with DbConnect's message instead.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>

#include <httplib.h>

#include <brindleway/types.h>
#include "tools/store_connection.h"

namespace brindlewayProj::web {

struct ServiceOptions {
  std::optional<String> store;  // the store file; without one, the store the ini file names
  String host = "127.0.0.1";
  int port = 8080;  // 0 takes any free port
  std::size_t threads = 4;
  std::size_t maxBodyBytes = 64 * 1024;
  std::chrono::seconds timeout{5};  // for reading a request and writing an answer
};

class Service {
 public:
  explicit Service(ServiceOptions options);
  ~Service();
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  // Binds the listening socket; answers the port. Raises std::runtime_error when the address
  // cannot be bound.
  int Bind();
  // Serves the bound socket until Stop; the workers' objects close before it returns.
  void Run();
  // Makes Run return; callable from any thread.
  void Stop();
  const String& Host() const { return options_.host; }

 private:
  ServiceOptions options_;
  cli::QuietMessageBoxes quiet_;
  httplib::Server server_;
};

}  // namespace brindlewayProj::web
