// Generates benchmark stores with set-based SQL in one transaction, caches them by size and
// hands out private copies.
#include "bench/bench_store.h"

#include <signal.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "store/schema.h"

namespace brindlewayProj::bench {
namespace {

namespace fs = std::filesystem;

// Bump when the generated rows change, so that older cached stores are not used.
constexpr const char* kGeneration = "v1";

// Customers: invented first and last names, combined by id.
constexpr const char* kCustomersSql = R"sql(
WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?1)
INSERT INTO Customers (CustomerId, FirstName, LastName)
SELECT i,
  json_extract('["Mirela","Tobin","Halvard","Sunniva","Ignaz","Oona","Perpetua","Caspian",
    "Wren","Isolde","Bartok","Fenna","Rupert","Liesl","Ambrose","Dagny","Cosimo","Elspeth",
    "Jarek","Marisol","Nils","Ottilie","Quillon","Saoirse"]', '$[' || (i % 24) || ']'),
  json_extract('["Quast","Arkwright","Ostrem","Pellegrin","Wetherby","Castellane",
    "Brackenbury","Dunmore","Elvestad","Farrow","Gilchrist","Hollins","Ivers","Jessop",
    "Kettleby","Lindqvist","Marchbank","Northcote","Oakhurst","Penhaligon","Ravensdale",
    "Stourton","Thistlewood","Underhill","Vantongeren"]', '$[' || ((i / 24) % 25) || ']')
FROM n
)sql";

// Products: 25 materials times 20 things, every name distinct even ignoring case.
constexpr const char* kProductsSql = R"sql(
WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?1)
INSERT INTO Products (ProductId, ProductName, Vendor, ProductPrice)
SELECT i,
  json_extract('["Alder","Basalt","Copper","Damson","Elder","Flint","Gorse","Hazel","Iron",
    "Juniper","Kelp","Linen","Maple","Nettle","Oak","Pewter","Quince","Rowan","Slate","Tansy",
    "Umber","Vetch","Willow","Yarrow","Zinc"]', '$[' || (((i - 1) / 20) % 25) || ']')
  || ' ' ||
  json_extract('["Tin","Mortar","Kettle","Jar","Candle","Slippers","Honey","Stick","Trivet",
    "Soap","Basket","Ladle","Lantern","Brush","Tray","Mug","Scarf","Bowl","Comb","Crate"]',
    '$[' || ((i - 1) % 20) || ']'),
  json_extract('["Fernbrook Goods","Greyhollow Stoneworks","Little Orchard Pantry",
    "Waxwing & Daughters","Tussock Makers","Brindle Forge","Marram Mills","Owlbarrow Trading",
    "Saltmarsh Wares","Thornapple Co."]', '$[' || (i % 10) || ']'),
  1.5 + ((i * 37) % 400) / 4.0
FROM n
)sql";

// Orders: ids in date order over seven years from 2020. A customer's orders are 1000 ids
// apart, so no two of them fall on one day and listings sorted by date have no ties. `v` mixes
// in the id's thousands so that state, times and descriptions vary within a customer. 60% are
// shipped (with a delivery date 2 to 7 days later), 35% open, 5% held; a quarter of the dates
// are at midnight; every ninth order has no description.
constexpr const char* kOrdersSql = R"sql(
WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?1),
t(i, v, at) AS (
  SELECT i, i + i / 1000,
         1577836800 + ((i - 1) * 1000 + (i * 7919) % 997) * 220752000 / (?1 * 1000)
  FROM n)
INSERT INTO Orders (OrderId, CustomerId, OrderDate, DeliveryDate, Delivery, Description)
SELECT i, 1 + (i * 367) % 1000,
  CASE WHEN v % 4 = 0 THEN date(at, 'unixepoch') || ' 00:00:00'
       ELSE datetime(at, 'unixepoch') END,
  CASE WHEN v % 20 < 12 THEN date(at + 86400 * (2 + v % 6), 'unixepoch') ||
       CASE WHEN v % 3 = 0 THEN ' 00:00:00'
            ELSE printf(' %02d:%02d:00', 8 + v % 10, (v * 13) % 60) END END,
  CASE WHEN v % 20 < 12 THEN 1 WHEN v % 20 < 19 THEN 0 ELSE 2 END,
  CASE WHEN v % 9 = 0 THEN NULL
       ELSE json_extract('["Gift wrap","Leave at the door","Birthday parcel",
         "Kitchen things","Spring restock","Gifts for the cabin","Call before delivery",
         "Office supplies","Garden corner","Weekend market","Repeat order",
         "Fragile, handle with care"]', '$[' || (v % 12) || ']') END
FROM t
)sql";

// Basket lines: 2 to 4 per order, scattered products, quantities 1 to 9, stored by order.
constexpr const char* kBasketSql = R"sql(
WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?1),
line(k) AS (VALUES (0), (1), (2), (3))
INSERT INTO OrderBasket (OrderId, ProductId, Quantity)
SELECT i, 1 + ((i * 261) % 500 + k * (1 + (i * 7) % 499)) % 500, 1 + (i + 5 * k) % 9
FROM n, line WHERE k < 2 + i % 3 ORDER BY i, k
)sql";

void Check(int code, sqlite3* db, const char* what) {
  if (code != SQLITE_OK && code != SQLITE_DONE) {
    throw std::runtime_error(std::string(what) + ": " + sqlite3_errmsg(db));
  }
}

void RunFor(sqlite3* db, const char* sql, long count) {
  sqlite3_stmt* statement = nullptr;
  Check(sqlite3_prepare_v2(db, sql, -1, &statement, nullptr), db, "generator");
  sqlite3_bind_int64(statement, 1, count);
  int code = sqlite3_step(statement);
  sqlite3_finalize(statement);
  Check(code, db, "generator");
}

void Exec(sqlite3* db, const std::string& sql) {
  Check(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), db, "generator");
}

// The schema's indexes: the statements that drop them while the rows go in, and those that
// build them again afterwards, one sorted pass each.
struct Indexes {
  std::string drop, create;
};

Indexes SchemaIndexes(sqlite3* db) {
  Indexes indexes;
  sqlite3_stmt* statement = nullptr;
  Check(sqlite3_prepare_v2(
            db, "SELECT name, sql FROM sqlite_master WHERE type = 'index' AND sql NOT NULL", -1,
            &statement, nullptr),
        db, "generator");
  while (sqlite3_step(statement) == SQLITE_ROW) {
    const auto* name = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
    indexes.drop += "DROP INDEX \"" + std::string(name) + "\";";
    indexes.create += reinterpret_cast<const char*>(sqlite3_column_text(statement, 1));
    indexes.create += ";";
  }
  sqlite3_finalize(statement);
  return indexes;
}

void Fill(const fs::path& file, long orders) {
  sqlite3* db = nullptr;
  Check(sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr), db, "open");
  try {
    Exec(db, "PRAGMA synchronous=OFF; PRAGMA cache_size=-262144; BEGIN");
    const Indexes indexes = SchemaIndexes(db);
    Exec(db, indexes.drop);
    RunFor(db, kCustomersSql, kCustomers);
    RunFor(db, kProductsSql, kProducts);
    RunFor(db, kOrdersSql, orders);
    RunFor(db, kBasketSql, orders);
    Exec(db, indexes.create);
    Exec(db, "COMMIT; PRAGMA wal_checkpoint(TRUNCATE)");
  } catch (...) {
    sqlite3_close_v2(db);
    throw;
  }
  sqlite3_close_v2(db);
}

fs::path CacheFolder() {
  const char* chosen = std::getenv("BRINDLEWAY_BENCH_STORES");
  fs::path folder = chosen && *chosen ? fs::path(chosen) : fs::path(BRINDLEWAY_BENCH_STORE_DIR);
  fs::create_directories(folder);
  return folder;
}

// Working copies left behind by runs that did not end normally.
void RemoveStaleCopies(const fs::path& folder) {
  for (const auto& entry : fs::directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    pid_t owner = 0;
    if (!entry.is_directory() || !name.starts_with("run-") ||
        std::from_chars(name.data() + 4, name.data() + name.size(), owner).ec != std::errc()) {
      continue;
    }
    if (owner != getpid() && kill(owner, 0) != 0 && errno == ESRCH) {
      std::error_code ignored;
      fs::remove_all(entry.path(), ignored);
    }
  }
}

}  // namespace

fs::path CachedStore(long orders) {
  const fs::path folder = CacheFolder();
  const fs::path file =
      folder / ("orders-" + std::to_string(orders) + "-" + kGeneration + ".mdb");
  if (fs::exists(file)) return file;
  // Built under a name of its own and renamed when complete, so that a cut-off generation
  // is never taken for a store.
  const fs::path partial = file.string() + "." + std::to_string(getpid()) + ".partial";
  std::error_code ignored;
  fs::remove(partial, ignored);
  store::CreateStore(partial, false);
  try {
    Fill(partial, orders);
  } catch (...) {
    fs::remove(partial, ignored);
    throw;
  }
  fs::rename(partial, file);
  return file;
}

WorkingCopy::WorkingCopy(long orders) {
  const fs::path cached = CachedStore(orders);
  RemoveStaleCopies(cached.parent_path());
  folder_ = cached.parent_path() / ("run-" + std::to_string(getpid()));
  fs::create_directories(folder_);
  file_ = folder_ / ("orders-" + std::to_string(orders) + ".mdb");
  fs::copy_file(cached, file_, fs::copy_options::overwrite_existing);
}

WorkingCopy::~WorkingCopy() {
  std::error_code ignored;
  fs::remove(file_, ignored);
  fs::remove(file_.string() + "-wal", ignored);
  fs::remove(file_.string() + "-shm", ignored);
  if (fs::is_empty(folder_, ignored)) fs::remove(folder_, ignored);
}

}  // namespace brindlewayProj::bench
