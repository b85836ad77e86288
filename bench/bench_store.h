// The store the benchmarks share: one order of 32767 basket rows, and a basket table of
// 1,000,000 rows over many orders, built once per run in a temporary folder.
#pragma once

#include <filesystem>
#include <utility>
#include <vector>

namespace brindlewayProj::bench {

inline constexpr int kBigOrder = 1;  // the order with 32767 basket rows
inline constexpr int kBigOrderRows = 32767;
inline constexpr int kBasketRows = 1'000'000;  // all basket rows

class BenchStore {
 public:
  BenchStore();
  ~BenchStore();
  const std::filesystem::path& File() const { return file_; }
  // Pairs of order and product that the basket holds, in a scattered order.
  const std::vector<std::pair<int, int>>& Pairs() const { return pairs_; }

 private:
  std::filesystem::path folder_;
  std::filesystem::path file_;
  std::vector<std::pair<int, int>> pairs_;
};

// The store of this run, made on first need.
const BenchStore& Store();

}  // namespace brindlewayProj::bench
