// One store size as the benchmarks see it: a working copy of the generated store, the
// component connected to it by DbConnect, a raw connection for the hand-written side, a third
// connection for the untimed upkeep of the writing benchmarks, and the random picks that both
// sides of a pair walk through in the same order.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <brindleway/brindleway.h>

#include "bench/bench_store.h"
#include "bench/raw_sqlite.h"

namespace brindlewayProj::bench {

// One set of ids for one call. Picks are drawn with a fixed seed across the whole store; the
// orders of any 128 consecutive picks are distinct.
struct Pick {
  Long orderId = 0;
  Long productId = 0;   // a product in that order's basket
  Long quantity = 0;    // its quantity there
  Long customerId = 0;  // a customer, independent of the order
  Long newProductId = 0;  // a product for a new basket line
  String productName;     // a product's name, for the look-up by name
};

class Shop {
 public:
  explicit Shop(long orders);
  ~Shop();
  Shop(const Shop&) = delete;
  Shop& operator=(const Shop&) = delete;

  long Orders() const { return orders_; }
  brindleway& Component() { return *component_; }
  RawDb& Raw() { return raw_; }
  const std::vector<Pick>& Picks() const { return picks_; }

  // Whether both sides list the same texts on this store: empty when they do, else the first
  // difference. Filled by the benchmark program before the first pair runs.
  std::optional<std::string> textsCompared;

  // Untimed upkeep of the writing benchmarks. SaveOrders keeps the orders of picks
  // [first, first + count) with their basket lines, SaveBasketLines their (order, product)
  // lines; Restore puts saved rows back over changed or deleted ones and removes orders and
  // lines added since opening, so that the store holds its generated rows again.
  void SaveOrders(std::size_t first, std::size_t count);
  void SaveBasketLines(std::size_t first, std::size_t count);
  void Restore();

 private:
  const Pick& PickAt(std::size_t index) const { return picks_[index % picks_.size()]; }
  void DrawPicks();

  long orders_;
  WorkingCopy copy_;
  RawDb upkeep_;
  RawDb raw_;
  std::vector<Pick> picks_;
  long long basketWatermark_ = 0;
  brindleway::WorkspaceRef workspace_;
  brindleway::DatabaseRef database_;
  std::unique_ptr<brindleway> component_;
};

// A stored date ("YYYY-MM-DD HH:MM:SS") as the component's Date.
Date ComponentDate(std::string_view stored);

// The shop of `orders` orders. Opening it closes the shop open before: the component's
// workspace begins its transactions on every store it has open, so it holds one at a time.
Shop& OpenShop(long orders);
// Closes the open shop, if any, and removes its working copy.
void CloseShop();

}  // namespace brindlewayProj::bench
