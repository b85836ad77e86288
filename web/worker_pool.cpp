// Worker threads that each own a shop session.
#include "web/worker_pool.h"

#include <algorithm>
#include <optional>

namespace brindlewayProj::web {
namespace {

// What the running worker owns: how to open its session, and the session once opened.
struct Worker {
  const WorkerPool::Opener* open;
  std::optional<ShopSession> session;
};
thread_local Worker* tWorker = nullptr;

}  // namespace

WorkerPool::WorkerPool(std::size_t threads, Opener open) : open_(std::move(open)) {
  for (std::size_t i = 0; i < std::max<std::size_t>(threads, 1); ++i) {
    threads_.emplace_back([this] { Work(); });
  }
}

WorkerPool::~WorkerPool() { shutdown(); }

void WorkerPool::enqueue(std::function<void()> job) {
  {
    std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
  }
  ready_.notify_one();
}

void WorkerPool::shutdown() {
  {
    std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  ready_.notify_all();
  for (std::thread& thread : threads_) {
    if (thread.joinable()) thread.join();
  }
}

ShopSession& WorkerPool::Current() {
  if (!tWorker) platform::Raise(platform::errInternal, "no shop session off the service's workers");
  if (!tWorker->session) tWorker->session = (*tWorker->open)();
  return *tWorker->session;
}

void WorkerPool::Work() {
  Worker worker{&open_, std::nullopt};
  tWorker = &worker;
  for (;;) {
    std::function<void()> job;
    {
      std::unique_lock lock(mutex_);
      ready_.wait(lock, [this] { return stopping_ || !jobs_.empty(); });
      if (jobs_.empty()) break;
      job = std::move(jobs_.front());
      jobs_.pop_front();
    }
    job();
  }
  tWorker = nullptr;
}

}  // namespace brindlewayProj::web
