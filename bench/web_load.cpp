// Load on the web service over loopback: N clients read an order and make sales through the
// API, a fixed count each, and the same calls run in-process on N threads for comparison.
// Prints requests per second with p50 and p99 latency for each, and checks the store for
// lost or duplicated orders (exit code 1 when any is).
//
//   web_load [clients] [reads per client] [sales per client]     (defaults 4 2000 100)
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <httplib.h>
#include <nlohmann/json.hpp>

#include <brindleway/brindleway.h>
#include "store/schema.h"
#include "web/service.h"

namespace brindlewayProj::bench {
namespace {

using Clock = std::chrono::steady_clock;
constexpr Long kReadOrder = 2;
constexpr Long kHttpCustomer = 5;  // the sales through the API; in-process ones are customer 6

// Latencies of one kind of request, and the wall time of the run that made them.
struct Run {
  std::vector<double> micros;
  double seconds = 0;
  void Print(const char* what) {
    std::sort(micros.begin(), micros.end());
    const auto at = [&](double share) {
      return micros.empty() ? 0.0 : micros[std::min(micros.size() - 1,
                                                    static_cast<std::size_t>(share * micros.size()))];
    };
    std::printf("%-34s %8zu requests %10.0f req/s   p50 %7.0f us   p99 %7.0f us\n", what,
                micros.size(), micros.size() / seconds, at(0.50), at(0.99));
  }
};

// Runs `work(client, latencies)` on `clients` threads at once; the latencies of all of them.
template <typename Work>
Run OnThreads(int clients, Work work) {
  std::vector<std::vector<double>> latencies(clients);
  std::vector<std::thread> threads;
  const Clock::time_point start = Clock::now();
  for (int c = 0; c < clients; ++c) threads.emplace_back([&, c] { work(c, latencies[c]); });
  for (std::thread& thread : threads) thread.join();
  Run run;
  run.seconds = std::chrono::duration<double>(Clock::now() - start).count();
  for (const auto& list : latencies) run.micros.insert(run.micros.end(), list.begin(), list.end());
  return run;
}

// Times `call` and adds its latency; false when it did not succeed.
template <typename Call>
bool Timed(std::vector<double>& latencies, Call call) {
  const Clock::time_point start = Clock::now();
  const bool ok = call();
  latencies.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
  return ok;
}

// A client on one connection for all its requests, as a browser keeps it.
httplib::Client KeptAlive(int port) {
  httplib::Client client("127.0.0.1", port);
  client.set_keep_alive(true);
  client.set_tcp_nodelay(true);
  return client;
}

bool Ok(const httplib::Result& result) { return result && result->status == 200; }

// An object of the component on the calling thread, connected to `store` (the service, alive
// meanwhile, keeps message boxes quiet).
std::unique_ptr<brindleway> Connected(const String& store) {
  auto object = std::make_unique<brindleway>();
  String message;
  brindleway::WorkspaceRef workspace;
  brindleway::DatabaseRef database;
  Variant file(store);
  if (object->DbConnect(message, workspace, database, file) < 0) throw std::runtime_error(message);
  return object;
}

// The orders of `customer` in the store, and how many basket lines they have.
std::pair<std::multiset<Long>, long> StoredSales(const String& store, Long customer) {
  auto database = Deref(dao::DBEngine().Workspaces(0)).OpenDatabase(store);
  std::multiset<Long> orders;
  auto rows = database->OpenRecordset(
      "Select OrderId From Orders Where CustomerId = " + std::to_string(customer), dao::dbOpenSnapshot);
  for (; !rows->Eof(); rows->MoveNext()) orders.insert(CLng(Deref(rows->Fields()).Item("OrderId")->Value()));
  long lines = 0;
  auto basket = database->OpenRecordset("Select OrderId From OrderBasket", dao::dbOpenSnapshot);
  for (; !basket->Eof(); basket->MoveNext()) {
    lines += orders.count(CLng(Deref(basket->Fields()).Item("OrderId")->Value())) > 0;
  }
  database->Close();
  return {orders, lines};
}

int Main(int clients, int reads, int sales) {
  const std::filesystem::path dir =
      std::filesystem::temp_directory_path() / ("brindleway-load-" + std::to_string(getpid()));
  std::filesystem::create_directories(dir);
  const String store = (dir / "load.mdb").string();
  store::CreateStore(store, true);

  web::Service service({.store = store, .port = 0, .threads = static_cast<std::size_t>(clients)});
  const int port = service.Bind();
  std::thread serving([&] { service.Run(); });
  std::printf("%d clients, %d workers, %d reads and %d sales each, store %s\n\n", clients, clients,
              reads, sales, store.c_str());
  long failures = 0;
  std::mutex failuresMutex;
  const auto fail = [&] { std::lock_guard lock(failuresMutex); ++failures; };

  Run httpReads = OnThreads(clients, [&](int, std::vector<double>& latencies) {
    httplib::Client client = KeptAlive(port);
    for (int r = 0; r < reads; ++r) {
      if (!Timed(latencies, [&] { return Ok(client.Get("/api/orders/" + std::to_string(kReadOrder))); })) fail();
    }
  });
  Run localReads = OnThreads(clients, [&](int, std::vector<double>& latencies) {
    std::unique_ptr<brindleway> shop = Connected(store);
    for (int r = 0; r < reads; ++r) {
      Timed(latencies, [&] {
        String message, first, last, description;
        Long orderId = kReadOrder, customer = 0;
        Date ordered, delivered;
        Integer delivery = 0;
        brindleway::RecordsetRef rows;
        bool ok = shop->OrderDetail(message, customer, first, last, ordered, delivered, delivery,
                                    description, orderId) > 0 &&
                  shop->BasketTable(message, rows, orderId) > 0;
        for (; ok && !rows->Eof(); rows->MoveNext()) Deref(rows->Fields()).Item("Quantity")->Value();
        return ok;
      }) || (fail(), true);
    }
  });

  std::vector<std::vector<Long>> soldKeys(clients);
  Run httpSales = OnThreads(clients, [&](int c, std::vector<double>& latencies) {
    httplib::Client client = KeptAlive(port);
    for (int s = 0; s < sales; ++s) {
      Long orderId = 0;
      const bool ok = Timed(latencies, [&] {
        httplib::Result started = client.Post(
            "/api/orders", R"({"customerId": )" + std::to_string(kHttpCustomer) + "}", "application/json");
        if (!Ok(started)) return false;
        orderId = nlohmann::json::parse(started->body)["orderId"].get<Long>();
        return true;
      }) && Timed(latencies, [&] {
        return Ok(client.Post("/api/orders/" + std::to_string(orderId) + "/basket",
                              R"({"productId": 4, "quantity": 1})", "application/json"));
      }) && Timed(latencies, [&] {
        return Ok(client.Post("/api/orders/" + std::to_string(orderId) + "/purchase",
                              R"({"deliveryDate": "2026-12-24"})", "application/json"));
      });
      if (ok) soldKeys[c].push_back(orderId); else fail();
    }
  });
  Run localSales = OnThreads(clients, [&](int, std::vector<double>& latencies) {
    std::unique_ptr<brindleway> shop = Connected(store);
    for (int s = 0; s < sales; ++s) {
      String message;
      Long orderId = 0, customer = 6, product = 4, quantity = 1;
      Variant orderDate = DateSerial(2026, 11, 23), deliveryDate, open = Integer{0};
      Date day = DateSerial(2026, 12, 24);
      Integer shipped = 1;
      const bool ok = Timed(latencies, [&] {
        return shop->StartNewOrder(message, orderId, customer, orderDate, deliveryDate, open) == 0;
      }) && Timed(latencies, [&] { return shop->ProductToBuy(message, orderId, product, quantity) == 0; }) &&
                      Timed(latencies, [&] { return shop->BuyAnOrder(message, orderId, day, shipped) == 1; });
      if (!ok) fail();
    }
  });
  service.Stop();
  serving.join();

  httpReads.Print("GET /api/orders/{id} over HTTP");
  localReads.Print("OrderDetail + BasketTable in-process");
  std::printf("%-34s %.0f%%\n\n", "read rate, HTTP / in-process",
              100.0 * (httpReads.micros.size() / httpReads.seconds) /
                  (localReads.micros.size() / localReads.seconds));
  httpSales.Print("sale requests over HTTP (3 a sale)");
  localSales.Print("sale calls in-process (3 a sale)");
  std::printf("%-34s %.0f sales/s over HTTP, %.0f in-process\n\n", "sales",
              httpSales.micros.size() / 3 / httpSales.seconds,
              localSales.micros.size() / 3 / localSales.seconds);

  std::multiset<Long> answered;
  for (const auto& keys : soldKeys) answered.insert(keys.begin(), keys.end());
  const auto [stored, lines] = StoredSales(store, kHttpCustomer);
  const std::set<Long> distinct(answered.begin(), answered.end());
  const long lost = static_cast<long>(std::count_if(distinct.begin(), distinct.end(),
                                                    [&](Long key) { return !stored.count(key); }));
  const long duplicated = static_cast<long>(answered.size() - distinct.size()) +
                          static_cast<long>(stored.size() - std::set<Long>(stored.begin(), stored.end()).size());
  std::printf("sales answered %zu, stored %zu with %ld basket lines; lost %ld, duplicated %ld, "
              "failed requests %ld\n",
              answered.size(), stored.size(), lines, lost, duplicated, failures);
  std::filesystem::remove_all(dir);
  const bool clean = lost == 0 && duplicated == 0 && failures == 0 &&
                     stored.size() == answered.size() && lines == static_cast<long>(answered.size());
  return clean ? 0 : 1;
}

}  // namespace
}  // namespace brindlewayProj::bench

int main(int argc, char** argv) {
  const auto arg = [&](int i, int fallback) { return argc > i ? std::max(1, std::atoi(argv[i])) : fallback; };
  try {
    return brindlewayProj::bench::Main(arg(1, 4), arg(2, 2000), arg(3, 100));
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "web_load: %s\n", failure.what());
    return 2;
  }
}
