// Times store methods of the component on PostgreSQL, over the local socket, against raw libpq
// doing the same work: the same rows read or written, statements prepared once, one transaction
// per writing call. The server is the one whose socket lies in BRINDLEWAY_BENCH_SOCKET (default
// /var/run/postgresql, where pg_virtualenv's is), as the PG* variables' user; under
// pg_virtualenv as root, which logs in on the socket as its own user:
//   pg_virtualenv sh -c 'createuser -s root; PGUSER=root build/bench/bench/postgres_bench'
// It makes the database brindleway_bench with the reference schema and
// BRINDLEWAY_BENCH_ORDERS orders (default 1,000), three basket lines each.
// Benchmarks are named Method/side, side "component" or "raw". Writes are not undone: the
// orders and lines they add stay, which grows the store by the calls made.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <span>
#include <stdexcept>

#include <brindleway/brindleway.h>

#include "bench/field_text.h"
#include "bench/raw_libpq.h"
#include "store/schema.h"

namespace brindlewayProj::bench {
namespace {

constexpr int kCustomers = 200;
constexpr int kProducts = 10;
const std::string kDatabase = "brindleway_bench";
std::string SocketFolder() {
  const char* given = std::getenv("BRINDLEWAY_BENCH_SOCKET");
  return given ? given : "/var/run/postgresql";
}
const std::string kUri = "postgresql:///" + kDatabase + "?host=" + SocketFolder();

long OrderCount() {
  const char* given = std::getenv("BRINDLEWAY_BENCH_ORDERS");
  return given ? std::atol(given) : 1000;
}

// The bench database, made anew: the reference schema with its samples, then generated
// customers, orders and basket lines.
void MakeStore(long orders) {
  {
    RawPg server("host=" + SocketFolder() + " dbname=postgres");
    server.Exec("DROP DATABASE IF EXISTS " + kDatabase + " WITH (FORCE)");
    server.Exec("CREATE DATABASE " + kDatabase);
  }
  store::CreateStore(kUri, true);
  RawPg db(kUri);
  const std::string n = std::to_string(orders);
  db.Exec(
      "INSERT INTO \"Customers\" (\"CustomerId\", \"FirstName\", \"LastName\") SELECT i, "
      "'First' || i, 'Last' || i FROM generate_series(7, " + std::to_string(kCustomers) + ") i;"
      "DELETE FROM \"Orders\";"
      "INSERT INTO \"Orders\" (\"OrderId\", \"CustomerId\", \"OrderDate\", \"Delivery\", "
      "\"Description\") SELECT i, 1 + i % " + std::to_string(kCustomers) + ", timestamp "
      "'2026-01-01' + i * interval '1 hour', i % 2, 'Order ' || i FROM generate_series(1, " + n +
      ") i;"
      "INSERT INTO \"OrderBasket\" SELECT o.\"OrderId\", 1 + (o.\"OrderId\" + k) % " +
      std::to_string(kProducts) + ", 1 + k FROM \"Orders\" o, generate_series(0, 2) k;"
      "SELECT setval(pg_get_serial_sequence('\"Orders\"', 'OrderId'), " + n + ");"
      "ANALYZE;");
}

struct Bench {
  explicit Bench(long orders) : orders(orders), raw(kUri) {
    String message;
    brindleway::WorkspaceRef workspace;
    brindleway::DatabaseRef database;
    Variant uri = Variant(String(kUri));
    if (component.DbConnect(message, workspace, database, uri) != 0) {
      throw std::runtime_error(message);
    }
  }
  Long AnyOrder() { return std::uniform_int_distribution<Long>(1, orders)(random); }
  Long AnyCustomer() { return std::uniform_int_distribution<Long>(1, kCustomers)(random); }
  // A product in the order's basket (the generator's first line).
  static Long ProductOf(Long order) { return 1 + order % kProducts; }

  long orders;
  std::mt19937 random{20261123};
  brindleway component;
  RawPg raw;
};

// A row of a libpq result, as the hand-made field texts read it.
struct PgRow {
  const PGresult* result;
  int row;
  bool IsNull(int column) const { return PQgetisnull(result, row, column); }
  std::string_view Text(int column) const {
    return {PQgetvalue(result, row, column),
            static_cast<std::size_t>(PQgetlength(result, row, column))};
  }
};

// The lines a listing makes of a result's rows, fields as `fields` show them.
long Lines(PGresult* result, std::span<const Field> fields, std::vector<std::string>& lines) {
  lines.clear();
  for (int row = 0; row < PQntuples(result); ++row) {
    AppendLine(PgRow{result, row}, fields, " | ", lines.emplace_back());
  }
  const long rows = PQntuples(result);
  PQclear(result);
  return rows;
}

// The out-values OrderDetail hands back, made from the first row: numbers, dates and names
// with a value.
struct OrderRow {
  long long customer = 0, delivery = 0;
  std::string first, last, description;
  std::optional<StoredTime> ordered, delivered;
};

OrderRow ReadOrder(PGresult* result) {
  OrderRow order;
  const PgRow row{result, 0};
  if (PQntuples(result) > 0) {
    order.customer = std::atoll(PQgetvalue(result, 0, 0));
    order.delivery = std::atoll(PQgetvalue(result, 0, 5));
    if (auto text = TextWithValue(row, 1)) order.first = *text;
    if (auto text = TextWithValue(row, 2)) order.last = *text;
    if (auto text = TextWithValue(row, 6)) order.description = *text;
    if (!row.IsNull(3)) order.ordered = ParseStoredTime(row.Text(3));
    if (!row.IsNull(4)) order.delivered = ParseStoredTime(row.Text(4));
  }
  PQclear(result);
  return order;
}

constexpr Field kNameField[] = {Field::kText};
constexpr Field kNumberField[] = {Field::kNumber};
constexpr Field kOrderFields[] = {Field::kNumber, Field::kDate, Field::kText};
constexpr const char* kOrdersSql =
    "SELECT \"OrderId\", \"OrderDate\", \"Description\" FROM \"OrdersWithNames\" WHERE "
    "\"CustomerId\" = $1 ORDER BY \"OrderDate\" DESC NULLS LAST";

// Both sides make the same lines of the orders of the first customers.
void CompareListings(Bench& bench) {
  bench.raw.Prepare("orders", kOrdersSql);
  for (Long customer = 1; customer <= 10; ++customer) {
    auto listed = std::make_shared<Collection>();
    String message, separator = " | ";
    Long id = customer;
    bench.component.ListOfOrders(message, listed, separator, id);
    std::vector<std::string> raw;
    Lines(bench.raw.Run("orders", {std::to_string(customer)}), kOrderFields, raw);
    if (Texts(*listed) != raw) {
      throw std::runtime_error("the sides list customer " + std::to_string(customer) +
                               "'s orders differently");
    }
  }
}

Bench& Shared() {
  static Bench* bench = [] {
    MakeStore(OrderCount());
    auto made = new Bench(OrderCount());
    CompareListings(*made);
    return made;
  }();
  return *bench;
}

void Expect(bool ok, const String& message) {
  if (!ok) throw std::runtime_error(message);
}

void Register(const char* name, std::function<void(Bench&)> component,
              std::function<void(Bench&)> raw) {
  auto run = [](std::function<void(Bench&)> call) {
    return [call](benchmark::State& state) {
      Bench& bench = Shared();
      for (auto _ : state) call(bench);
    };
  };
  benchmark::RegisterBenchmark((std::string(name) + "/component").c_str(), run(component))
      ->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark((std::string(name) + "/raw").c_str(), run(raw))
      ->Unit(benchmark::kMicrosecond);
}

void RegisterAll() {
  static std::vector<std::string> lines;
  static String message, separator = " | ";
  Register(
      "BasketList",
      [](Bench& b) {
        auto names = std::make_shared<Collection>();
        Long order = b.AnyOrder();
        Expect(b.component.BasketList(message, names, order) > 0, message);
      },
      [](Bench& b) {
        b.raw.Prepare("basket", "SELECT \"ProductName\" FROM \"BasketList\" WHERE \"OrderId\" = "
                                "$1 ORDER BY \"ProductName\" COLLATE nocase NULLS FIRST");
        Lines(b.raw.Run("basket", {std::to_string(b.AnyOrder())}), kNameField, lines);
      });
  Register(
      "ListOfOrders",
      [](Bench& b) {
        auto list = std::make_shared<Collection>();
        Long customer = b.AnyCustomer();
        Expect(b.component.ListOfOrders(message, list, separator, customer) >= 0, message);
      },
      [](Bench& b) {
        Lines(b.raw.Run("orders", {std::to_string(b.AnyCustomer())}), kOrderFields, lines);
      });
  Register(
      "OrderDetail",
      [](Bench& b) {
        Long customer = 0, order = b.AnyOrder();
        String first, last, description;
        Date ordered, delivered;
        Integer delivery = 0;
        Expect(b.component.OrderDetail(message, customer, first, last, ordered, delivered,
                                       delivery, description, order) > 0,
               message);
      },
      [](Bench& b) {
        b.raw.Prepare("detail", "SELECT \"CustomerId\", \"FirstName\", \"LastName\", "
                                "\"OrderDate\", \"DeliveryDate\", \"Delivery\", \"Description\" "
                                "FROM \"OrdersWithNames\" WHERE \"OrderId\" = $1 ORDER BY "
                                "\"OrderDate\" DESC NULLS LAST");
        ReadOrder(b.raw.Run("detail", {std::to_string(b.AnyOrder())}));
      });
  Register(
      "QuantityOrdered",
      [](Bench& b) {
        Long quantity = 0, order = b.AnyOrder(), product = Bench::ProductOf(order);
        Expect(b.component.QuantityOrdered(message, quantity, order, product) > 0, message);
      },
      [](Bench& b) {
        b.raw.Prepare("quantity", "SELECT DISTINCT \"Quantity\" FROM \"OrderBasket\" WHERE "
                                  "\"OrderId\" = $1 AND \"ProductId\" = $2");
        const Long order = b.AnyOrder();
        Lines(b.raw.Run("quantity", {std::to_string(order), std::to_string(Bench::ProductOf(order))}),
              kNumberField, lines);
      });
  Register(
      "StartNewOrder",
      [](Bench& b) {
        Long order = 0, customer = b.AnyCustomer();
        Variant date = Date{46300.5}, none, open = Integer(0), note = Variant("Bench order");
        Expect(b.component.StartNewOrder(message, order, customer, date, none, open, note) == 0,
               message);
      },
      [](Bench& b) {
        b.raw.Prepare("new", "INSERT INTO \"Orders\" (\"CustomerId\", \"OrderDate\", "
                             "\"Delivery\", \"Description\") VALUES ($1, $2, $3, $4) "
                             "RETURNING \"OrderId\"");
        b.raw.Exec("BEGIN");
        PQclear(b.raw.Run("new", {std::to_string(b.AnyCustomer()), "2026-10-06 12:00:00", "0",
                                  "Bench order"}));
        b.raw.Exec("COMMIT");
      });
  Register(
      "ProductToBuy",
      [](Bench& b) {
        Long order = b.AnyOrder(), product = 3, quantity = 2;
        Expect(b.component.ProductToBuy(message, order, product, quantity) == 0, message);
      },
      [](Bench& b) {
        b.raw.Prepare("buy", "INSERT INTO \"OrderBasket\" (\"OrderId\", \"ProductId\", "
                             "\"Quantity\") VALUES ($1, $2, $3)");
        b.raw.Exec("BEGIN");
        PQclear(b.raw.Run("buy", {std::to_string(b.AnyOrder()), "3", "2"}));
        b.raw.Exec("COMMIT");
      });
  Register(
      "BuyAnOrder",
      [](Bench& b) {
        Long order = b.AnyOrder();
        Date delivered{46310.0};
        Integer delivery = 1;
        Expect(b.component.BuyAnOrder(message, order, delivered, delivery) == 1, message);
      },
      [](Bench& b) {
        b.raw.Prepare("ship", "UPDATE \"Orders\" SET \"DeliveryDate\" = $1, \"Delivery\" = $2 "
                              "WHERE \"OrderId\" = $3");
        b.raw.Exec("BEGIN");
        PQclear(b.raw.Run("ship", {"2026-10-16 00:00:00", "1", std::to_string(b.AnyOrder())}));
        b.raw.Exec("COMMIT");
      });
  Register(
      "ModifyOrderQuantity",
      [](Bench& b) {
        Long order = b.AnyOrder(), product = Bench::ProductOf(order);
        Variant quantity = Long(b.AnyCustomer() % 9 + 1);
        Expect(b.component.ModifyOrderQuantity(message, order, product, quantity) == 1, message);
      },
      [](Bench& b) {
        b.raw.Prepare("change", "UPDATE \"OrderBasket\" SET \"Quantity\" = $1 WHERE ctid = "
                                "(SELECT ctid FROM \"OrderBasket\" WHERE \"OrderId\" = $2 AND "
                                "\"ProductId\" = $3 LIMIT 1)");
        const Long order = b.AnyOrder();
        b.raw.Exec("BEGIN");
        PQclear(b.raw.Run("change", {std::to_string(b.AnyCustomer() % 9 + 1),
                                     std::to_string(order), std::to_string(Bench::ProductOf(order))}));
        b.raw.Exec("COMMIT");
      });
}

}  // namespace
}  // namespace brindlewayProj::bench

int main(int argc, char** argv) {
  brindlewayProj::bench::RegisterAll();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
