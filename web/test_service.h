// Test-only: the service on a fresh sample store, on a free loopback port, served from a
// thread of its own for as long as the object lives.
#pragma once

#include <thread>

#include <httplib.h>

#include "tests/support/test_support.h"
#include "web/service.h"

namespace brindlewayProj::web {

class TestService {
 public:
  explicit TestService(std::size_t threads = 2)
      : store_(testing::MakeStore(dir_)),
        service_(ServiceOptions{.store = store_.string(),
                                .port = 0,
                                .threads = threads,
                                .timeout = std::chrono::seconds(2)}),
        port_(service_.Bind()),
        serving_([this] { service_.Run(); }) {}
  ~TestService() {
    service_.Stop();
    serving_.join();
  }

  const std::filesystem::path& store() const { return store_; }
  int port() const { return port_; }
  String url() const { return "http://127.0.0.1:" + std::to_string(port_); }
  httplib::Client Client() const { return httplib::Client("127.0.0.1", port_); }

 private:
  testing::TempDir dir_;
  std::filesystem::path store_;
  Service service_;
  int port_;
  std::thread serving_;
};

}  // namespace brindlewayProj::web
