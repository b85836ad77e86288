// The benchmark shop: connections, picks and the upkeep that undoes the writing benchmarks.
#include "bench/shop.h"

#include <algorithm>
#include <random>
#include <stdexcept>
#include <unordered_set>

namespace brindlewayProj::bench {
namespace {

constexpr std::size_t kMaxPicks = 4096;
constexpr std::uint64_t kSeed = 20240611;

// Distinct order ids drawn across 1..orders.
std::vector<Long> DistinctOrders(long orders, std::mt19937_64& random) {
  std::vector<Long> ids;
  if (static_cast<std::size_t>(orders) <= kMaxPicks) {
    for (long id = 1; id <= orders; ++id) ids.push_back(static_cast<Long>(id));
    std::shuffle(ids.begin(), ids.end(), random);
    return ids;
  }
  std::uniform_int_distribution<long> any(1, orders);
  std::unordered_set<Long> seen;
  while (ids.size() < kMaxPicks) {
    auto id = static_cast<Long>(any(random));
    if (seen.insert(id).second) ids.push_back(id);
  }
  return ids;
}

std::unique_ptr<Shop>& OpenOne() {
  static std::unique_ptr<Shop> open;
  return open;
}

}  // namespace

Date ComponentDate(std::string_view stored) {
  const auto time = ParseStoredTime(stored);
  if (!time) throw std::runtime_error("not a stored date: " + std::string(stored));
  return Date{DateSerial(static_cast<Integer>(time->year), static_cast<Integer>(time->month),
                         static_cast<Integer>(time->day))
                  .serial +
              TimeSerial(static_cast<Integer>(time->hour), static_cast<Integer>(time->minute),
                         static_cast<Integer>(time->second))
                  .serial};
}

Shop::Shop(long orders) : orders_(orders), copy_(orders), upkeep_(copy_.File()), raw_(copy_.File()) {
  // Without foreign keys, putting a saved order back over its changed row leaves the order's
  // basket lines alone.
  upkeep_.Exec(
      "PRAGMA foreign_keys=OFF;"
      "CREATE TEMP TABLE SavedOrders AS SELECT * FROM main.Orders WHERE 0;"
      "CREATE TEMP TABLE SavedLines AS SELECT rowid AS Line, OrderId, ProductId, Quantity "
      "FROM main.OrderBasket WHERE 0");
  RawStatement last(upkeep_, "SELECT max(rowid) FROM OrderBasket");
  last.Start().Step();
  basketWatermark_ = last.Int(0);
  DrawPicks();

  // The component connects at creation to its default store, which the benchmark does not
  // have: that message box is not shown. It is connected to the working copy just below.
  platform::SetMessageBoxHandler([](const String&, Integer) -> Integer { return 1; });
  component_ = std::make_unique<brindleway>();
  platform::SetMessageBoxHandler({});
  String message;
  Variant file = String(copy_.File().string());
  if (component_->DbConnect(message, workspace_, database_, file) != 0) {
    throw std::runtime_error(message);
  }
}

Shop::~Shop() {
  component_.reset();
  database_.reset();
  workspace_.reset();
}

void Shop::DrawPicks() {
  std::mt19937_64 random(kSeed);
  std::uniform_int_distribution<Long> customer(1, kCustomers);
  std::uniform_int_distribution<Long> product(1, kProducts);
  RawStatement lines(upkeep_, "SELECT ProductId, Quantity FROM OrderBasket WHERE OrderId = ?1");
  RawStatement name(upkeep_, "SELECT ProductName FROM Products WHERE ProductId = ?1");
  for (Long id : DistinctOrders(orders_, random)) {
    Pick pick;
    pick.orderId = id;
    std::vector<std::pair<Long, Long>> basket;
    lines.Start().Bind(1, id);
    while (lines.Step()) basket.emplace_back(lines.Int(0), lines.Int(1));
    if (basket.empty()) throw std::runtime_error("order without basket lines");
    std::tie(pick.productId, pick.quantity) =
        basket[std::uniform_int_distribution<std::size_t>(0, basket.size() - 1)(random)];
    pick.customerId = customer(random);
    pick.newProductId = product(random);
    name.Start().Bind(1, product(random)).Step();
    pick.productName = String(name.Text(0));
    picks_.push_back(std::move(pick));
  }
}

void Shop::SaveOrders(std::size_t first, std::size_t count) {
  RawStatement order(upkeep_,
                     "INSERT INTO temp.SavedOrders SELECT * FROM main.Orders WHERE OrderId = ?1");
  RawStatement lines(upkeep_,
                     "INSERT INTO temp.SavedLines SELECT rowid, OrderId, ProductId, Quantity "
                     "FROM main.OrderBasket WHERE OrderId = ?1");
  for (std::size_t i = first; i < first + count; ++i) {
    order.Start().Bind(1, PickAt(i).orderId).Run();
    lines.Start().Bind(1, PickAt(i).orderId).Run();
  }
}

void Shop::SaveBasketLines(std::size_t first, std::size_t count) {
  RawStatement lines(upkeep_,
                     "INSERT INTO temp.SavedLines SELECT rowid, OrderId, ProductId, Quantity "
                     "FROM main.OrderBasket WHERE OrderId = ?1 AND ProductId = ?2");
  for (std::size_t i = first; i < first + count; ++i) {
    lines.Start().Bind(1, PickAt(i).orderId).Bind(2, PickAt(i).productId).Run();
  }
}

void Shop::Restore() {
  const std::string sql =
      "BEGIN IMMEDIATE;"
      "DELETE FROM main.Orders WHERE OrderId > " + std::to_string(orders_) + ";"
      "DELETE FROM main.OrderBasket WHERE rowid > " + std::to_string(basketWatermark_) + ";"
      "INSERT OR REPLACE INTO main.Orders SELECT * FROM temp.SavedOrders;"
      "INSERT OR REPLACE INTO main.OrderBasket (rowid, OrderId, ProductId, Quantity) "
      "  SELECT Line, OrderId, ProductId, Quantity FROM temp.SavedLines;"
      "DELETE FROM temp.SavedOrders; DELETE FROM temp.SavedLines;"
      "COMMIT";
  try {
    upkeep_.Exec(sql.c_str());
  } catch (...) {
    upkeep_.Rollback();
    throw;
  }
}

Shop& OpenShop(long orders) {
  std::unique_ptr<Shop>& open = OpenOne();
  if (!open || open->Orders() != orders) {
    open.reset();
    open = std::make_unique<Shop>(orders);
  }
  return *open;
}

void CloseShop() { OpenOne().reset(); }

}  // namespace brindlewayProj::bench
