// The service's worker threads, as cpp-httplib's task queue. Each worker owns one shop
// session, opened on the worker at its first request and closed there when the pool stops,
// so that every component object is used only on the thread that made it.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include <httplib.h>

#include "web/shop_session.h"

namespace brindlewayProj::web {

class WorkerPool : public httplib::TaskQueue {
 public:
  using Opener = std::function<ShopSession()>;

  // Starts `threads` workers (at least one); `open` makes a worker's session.
  WorkerPool(std::size_t threads, Opener open);
  ~WorkerPool() override;
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  void enqueue(std::function<void()> job) override;
  // Lets the workers finish the queued jobs, then ends them; their sessions close.
  void shutdown() override;

  // The session of the calling worker, opened now if it has none. Raises what opening raised
  // (the next request tries again); called off a worker, raises platform::Error 51.
  static ShopSession& Current();

 private:
  void Work();

  Opener open_;
  std::mutex mutex_;
  std::condition_variable ready_;
  std::deque<std::function<void()>> jobs_;
  bool stopping_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace brindlewayProj::web
