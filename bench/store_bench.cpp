// The object model against raw SQLite on the same store and the same rows:
//  (a) a snapshot of one order's 32767 basket rows, counted by MoveLast, walked from MoveFirst,
//      reading ProductName of each row;
//  (b) a point query of one basket line by order and product, a different pair each time.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <string>

#include "bench/bench_store.h"
#include <brindleway/dao.h>

namespace brindlewayProj::bench {
namespace {

const std::string kBasketQuery =
    "Select [ProductName] From [BasketList] Where ( [OrderId] = " + std::to_string(kBigOrder) +
    " ) Order By [ProductName] Asc";

// The same rows in the same order as kBasketQuery.
const char* const kRawBasketSql =
    "SELECT ProductName FROM BasketList WHERE OrderId = ?1 ORDER BY ProductName COLLATE NOCASE";
const char* const kRawQuantitySql =
    "SELECT DISTINCT Quantity FROM OrderBasket WHERE OrderId = ?1 AND ProductId = ?2";

std::shared_ptr<dao::Database> OpenDatabase() {
  return dao::DBEngine().Workspaces(0)->OpenDatabase(Store().File().string());
}

sqlite3* OpenRaw() {
  sqlite3* db = nullptr;
  sqlite3_open_v2(Store().File().c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
  return db;
}

void BasketSnapshot_Dao(benchmark::State& state) {
  auto db = OpenDatabase();
  for (auto _ : state) {
    auto recordset = db->OpenRecordset(kBasketQuery, dao::dbOpenSnapshot);
    if (recordset->RecordCount() > 0) {
      recordset->MoveLast();
      recordset->MoveFirst();
    }
    std::size_t bytes = 0;
    while (!recordset->Eof()) {
      bytes += recordset->Fields()->Item("ProductName")->Value().AsString().size();
      recordset->MoveNext();
    }
    if (recordset->RecordCount() != kBigOrderRows) state.SkipWithError("wrong row count");
    benchmark::DoNotOptimize(bytes);
  }
}

void BasketSnapshot_Raw(benchmark::State& state) {
  sqlite3* db = OpenRaw();
  for (auto _ : state) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(db, kRawBasketSql, -1, &statement, nullptr);
    sqlite3_bind_int(statement, 1, kBigOrder);
    std::size_t bytes = 0;
    int rows = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      auto* name = sqlite3_column_text(statement, 0);
      bytes += std::char_traits<char>::length(reinterpret_cast<const char*>(name));
      ++rows;
    }
    sqlite3_finalize(statement);
    if (rows != kBigOrderRows) state.SkipWithError("wrong row count");
    benchmark::DoNotOptimize(bytes);
  }
  sqlite3_close(db);
}

void QuantityLookup_Dao(benchmark::State& state) {
  auto db = OpenDatabase();
  const auto& pairs = Store().Pairs();
  std::size_t next = 0;
  for (auto _ : state) {
    const auto& [order, product] = pairs[next++ % pairs.size()];
    auto recordset = db->OpenRecordset(
        "Select Distinct [Quantity] From [OrderBasket] Where ( [OrderId] = " +
            std::to_string(order) + " AND [ProductId] = " + std::to_string(product) + " )",
        dao::dbOpenSnapshot);
    if (recordset->RecordCount() < 1) state.SkipWithError("no row");
    recordset->MoveLast();
    recordset->MoveFirst();
    benchmark::DoNotOptimize(recordset->Fields()->Item("Quantity")->Value().AsLong());
  }
}

void QuantityLookup_Raw(benchmark::State& state) {
  sqlite3* db = OpenRaw();
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(db, kRawQuantitySql, -1, &statement, nullptr);
  const auto& pairs = Store().Pairs();
  std::size_t next = 0;
  for (auto _ : state) {
    const auto& [order, product] = pairs[next++ % pairs.size()];
    sqlite3_bind_int(statement, 1, order);
    sqlite3_bind_int(statement, 2, product);
    int rows = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      benchmark::DoNotOptimize(sqlite3_column_int(statement, 0));
      ++rows;
    }
    sqlite3_reset(statement);
    if (rows < 1) state.SkipWithError("no row");
  }
  sqlite3_finalize(statement);
  sqlite3_close(db);
}

BENCHMARK(BasketSnapshot_Dao)->Unit(benchmark::kMillisecond);
BENCHMARK(BasketSnapshot_Raw)->Unit(benchmark::kMillisecond);
BENCHMARK(QuantityLookup_Dao)->Unit(benchmark::kMicrosecond);
BENCHMARK(QuantityLookup_Raw)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace brindlewayProj::bench

BENCHMARK_MAIN();
