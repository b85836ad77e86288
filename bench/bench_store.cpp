// Builds the benchmark store with raw SQLite in one transaction.
#include "bench/bench_store.h"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <string>

#include "store/schema.h"

namespace brindlewayProj::bench {
namespace {

constexpr int kProducts = 2000;
constexpr int kProductsPerOrder = 40;

void Check(int code, sqlite3* db) {
  if (code != SQLITE_OK && code != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(db));
}

void Fill(sqlite3* db, std::vector<std::pair<int, int>>& pairs) {
  static const char* const kWords[] = {"Alder", "Basalt", "Copper", "Damson", "Elder",
                                       "Felt",  "Gorse",  "Hazel",  "Iron",   "Juniper"};
  static const char* const kThings[] = {"Tin",      "Mortar", "Kettle", "Jar",    "Candle",
                                        "Slippers", "Honey",  "Stick",  "Trivet", "Soap"};
  Check(sqlite3_exec(db, "BEGIN; DELETE FROM OrderBasket; DELETE FROM Orders;", nullptr, nullptr,
                     nullptr),
        db);
  sqlite3_stmt* statement = nullptr;
  Check(sqlite3_prepare_v2(db, "INSERT OR REPLACE INTO Products VALUES (?, ?, 'Bench Vendor', ?)",
                           -1, &statement, nullptr),
        db);
  std::mt19937 random(7);
  for (int product = 1; product <= kProducts; ++product) {
    std::string name = std::string(kWords[random() % 10]) + " " + kThings[random() % 10] + " " +
                       std::to_string(product);
    sqlite3_bind_int(statement, 1, product);
    sqlite3_bind_text(statement, 2, name.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_double(statement, 3, 1.25 + product % 50);
    Check(sqlite3_step(statement), db);
    sqlite3_reset(statement);
  }
  sqlite3_finalize(statement);
  int orders = 1 + (kBasketRows - kBigOrderRows + kProductsPerOrder - 1) / kProductsPerOrder;
  Check(
      sqlite3_prepare_v2(db, "INSERT INTO Orders (OrderId, CustomerId, Delivery) VALUES (?, 1, 0)",
                         -1, &statement, nullptr),
      db);
  for (int order = 1; order <= orders; ++order) {
    sqlite3_bind_int(statement, 1, order);
    Check(sqlite3_step(statement), db);
    sqlite3_reset(statement);
  }
  sqlite3_finalize(statement);
  Check(sqlite3_prepare_v2(db, "INSERT INTO OrderBasket VALUES (?, ?, ?)", -1, &statement, nullptr),
        db);
  for (int row = 0; row < kBasketRows; ++row) {
    bool big = row < kBigOrderRows;
    int order = big ? kBigOrder : 2 + (row - kBigOrderRows) / kProductsPerOrder;
    int product = static_cast<int>(big ? 1 + row % kProducts : 1 + random() % kProducts);
    sqlite3_bind_int(statement, 1, order);
    sqlite3_bind_int(statement, 2, product);
    sqlite3_bind_int(statement, 3, 1 + row % 9);
    Check(sqlite3_step(statement), db);
    sqlite3_reset(statement);
    if (!big && row % 977 == 0) pairs.emplace_back(order, product);
  }
  sqlite3_finalize(statement);
  Check(sqlite3_exec(db, "COMMIT; ANALYZE;", nullptr, nullptr, nullptr), db);
  std::shuffle(pairs.begin(), pairs.end(), random);
}

}  // namespace

BenchStore::BenchStore() {
  folder_ =
      std::filesystem::temp_directory_path() / ("brindleway-bench-" + std::to_string(getpid()));
  std::filesystem::create_directories(folder_);
  file_ = folder_ / "bench.mdb";
  store::CreateStore(file_, true);
  sqlite3* db = nullptr;
  sqlite3_open(file_.c_str(), &db);
  try {
    Fill(db, pairs_);
  } catch (...) {
    sqlite3_close(db);
    throw;
  }
  sqlite3_close(db);
}

BenchStore::~BenchStore() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

const BenchStore& Store() {
  static BenchStore store;
  return store;
}

}  // namespace brindlewayProj::bench
