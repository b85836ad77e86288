// The stores the benchmarks run on: 1,000 customers, 500 products, a given number of orders and
// 2 to 4 basket lines per order (3 on average), with the component's own schema. A store of
// each size is generated once into a cache folder and copied for every run, so that each run
// starts from the same rows.
#pragma once

#include <filesystem>

namespace brindlewayProj::bench {

inline constexpr long kCustomers = 1000;
inline constexpr long kProducts = 500;

// The cached store of `orders` orders (ids 1 to `orders`), generated on first need. The cache
// folder is $BRINDLEWAY_BENCH_STORES, else the build's bench/stores.
std::filesystem::path CachedStore(long orders);

// A private copy of the cached store of `orders` orders, removed with the object.
class WorkingCopy {
 public:
  explicit WorkingCopy(long orders);
  ~WorkingCopy();
  WorkingCopy(const WorkingCopy&) = delete;
  WorkingCopy& operator=(const WorkingCopy&) = delete;
  const std::filesystem::path& File() const { return file_; }

 private:
  std::filesystem::path folder_;
  std::filesystem::path file_;
};

}  // namespace brindlewayProj::bench
