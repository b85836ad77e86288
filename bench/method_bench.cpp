// Times each store method of the component against the raw SQLite C API doing the same work on
// the same store: the same rows read or written, the same texts made, one transaction per
// writing call, statements prepared once. Benchmarks are named Method/side/orders, with side
// "component" or "raw", on stores of 1,000 and 100,000 orders, or of the sizes listed in
// BRINDLEWAY_BENCH_ORDERS (e.g. "1000,100000,1000000"). The counter "rows" is the rows found
// or written per call.
//
// Writing benchmarks change real rows (a write of the values a row already holds would store
// nothing) and leave the store as they found it: an untimed upkeep between batches of calls
// saves the rows a batch changes or deletes and puts them back, and removes the rows a batch
// adds.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <span>
#include <stdexcept>
#include <string_view>

#include "bench/shop.h"

namespace brindlewayProj::bench {
namespace {

// One call on the ids of a pick; answers the rows found or written, throws on failure.
using Call = std::function<long(const Pick&)>;

constexpr std::size_t kBatch = 128;  // calls between two upkeeps
constexpr std::string_view kSeparator = ", ";
constexpr std::string_view kNewOrderStamp = "2026-11-22 14:05:00";
constexpr std::string_view kNewOrderNote = "Left with a neighbour";
constexpr std::string_view kDeliveryStamp = "2026-11-30 10:00:00";
constexpr Long kQuantityChange = 10;  // added to a line's quantity (1 to 9) by the change

// The component's status of a reader: the rows found.
long Found(Integer status, const String& message) {
  if (status < 0) throw std::runtime_error(message);
  return status;
}
// The component's status of a write that answers 0 on success.
long Stored(Integer status, const String& message) {
  if (status != 0) throw std::runtime_error(message);
  return 1;
}
// The component's status of a write that answers the rows changed.
long Changed(Integer status, const String& message) {
  if (status < 1) throw std::runtime_error(message);
  return status;
}
// The rows the raw side's last statement changed, at least one.
long RawChanged(RawDb& db) {
  long changed = sqlite3_changes(db.Handle());
  if (changed < 1) throw std::runtime_error("no row changed");
  return changed;
}

// --- Product names of an order: BasketList, GetOrderedProducts -------------------------------

long RawNames(RawStatement& query, Long orderId, std::vector<std::string>& names) {
  names.clear();
  query.Start().Bind(1, orderId);
  while (query.Step()) names.emplace_back(query.IsNull(0) ? "<Empty>" : query.Text(0));
  return static_cast<long>(names.size());
}

using ComponentNames = Integer (brindleway::*)(String&, brindleway::CollectionRef&, Long&);

Call ComponentNamesCall(Shop& shop, ComponentNames method) {
  return [&shop, method, names = std::make_shared<Collection>(),
          message = String()](const Pick& pick) mutable {
    Long orderId = pick.orderId;
    return Found((shop.Component().*method)(message, names, orderId), message);
  };
}

Call RawNamesCall(Shop& shop, const char* sql) {
  auto query = std::make_shared<RawStatement>(shop.Raw(), sql);
  auto names = std::make_shared<std::vector<std::string>>();
  return [query, names](const Pick& pick) { return RawNames(*query, pick.orderId, *names); };
}

constexpr const char* kRawBasketList =
    "SELECT ProductName FROM BasketList WHERE OrderId = ?1 ORDER BY ProductName COLLATE NOCASE";
constexpr const char* kRawOrderedProducts =
    "SELECT DISTINCT ProductName FROM BasketList WHERE OrderId = ?1";

// --- A customer's orders as lines: ListOfOrders, ListOpenOrders, ListShippedOrders -----------

struct Listing {
  Integer (*component)(brindleway&, String&, brindleway::CollectionRef&, String&, Long&);
  const char* rawSql;
  std::optional<long long> delivery;  // bound as ?2 when the listing is on one Delivery
  std::span<const Field> fields;
};

constexpr Field kOrderFields[] = {Field::kNumber, Field::kDate, Field::kText};
constexpr Field kShippedFields[] = {Field::kNumber, Field::kDate, Field::kDate, Field::kText};

const Listing kAllOrders{
    [](brindleway& shop, String& message, brindleway::CollectionRef& lines, String& separator,
       Long& customerId) { return shop.ListOfOrders(message, lines, separator, customerId); },
    "SELECT OrderId, OrderDate, Description FROM OrdersWithNames WHERE CustomerId = ?1 "
    "ORDER BY OrderDate DESC",
    std::nullopt, kOrderFields};
const Listing kOpenOrders{
    [](brindleway& shop, String& message, brindleway::CollectionRef& lines, String& separator,
       Long& customerId) {
      Integer delivery = 0;
      return shop.ListOpenOrders(message, lines, separator, customerId, delivery);
    },
    "SELECT OrderId, OrderDate, Description FROM OrdersWithNames "
    "WHERE CustomerId = ?1 AND Delivery = ?2",
    0, kOrderFields};
const Listing kShippedOrders{
    [](brindleway& shop, String& message, brindleway::CollectionRef& lines, String& separator,
       Long& customerId) { return shop.ListShippedOrders(message, lines, separator, customerId); },
    "SELECT OrderId, OrderDate, DeliveryDate, Description FROM OrdersWithNames "
    "WHERE CustomerId = ?1 AND Delivery = ?2 ORDER BY OrderDate DESC",
    1, kShippedFields};

long RawLines(RawStatement& query, const Listing& listing, Long customerId,
              std::vector<std::string>& lines) {
  lines.clear();
  query.Start().Bind(1, customerId);
  if (listing.delivery) query.Bind(2, *listing.delivery);
  while (query.Step()) AppendLine(query, listing.fields, kSeparator, lines.emplace_back());
  return static_cast<long>(lines.size());
}

Call ComponentListingCall(Shop& shop, const Listing& listing) {
  return [&shop, &listing, lines = std::make_shared<Collection>(), message = String(),
          separator = String(kSeparator)](const Pick& pick) mutable {
    Long customerId = pick.customerId;
    return Found(listing.component(shop.Component(), message, lines, separator, customerId),
                 message);
  };
}

Call RawListingCall(Shop& shop, const Listing& listing) {
  auto query = std::make_shared<RawStatement>(shop.Raw(), listing.rawSql);
  auto lines = std::make_shared<std::vector<std::string>>();
  return [query, &listing, lines](const Pick& pick) {
    return RawLines(*query, listing, pick.customerId, *lines);
  };
}

// --- One order's basket as a table: BasketTable -----------------------------------------------

struct BasketRow {
  std::string productName, vendor;
  double price;
  long long quantity;
  double extendedPrice;
};

Call ComponentBasketTable(Shop& shop) {
  return [&shop, message = String()](const Pick& pick) mutable {
    brindleway::RecordsetRef table;
    Long orderId = pick.orderId;
    return Found(shop.Component().BasketTable(message, table, orderId), message);
  };
}

Call RawBasketTable(Shop& shop) {
  auto query = std::make_shared<RawStatement>(
      shop.Raw(),
      "SELECT ProductName, Vendor, ProductPrice, Quantity, \"Extended Price\" FROM BasketList "
      "WHERE OrderId = ?1");
  return [query](const Pick& pick) {
    std::vector<BasketRow> rows;
    query->Start().Bind(1, pick.orderId);
    while (query->Step()) {
      rows.push_back({std::string(query->Text(0)), std::string(query->Text(1)), query->Real(2),
                      query->Int(3), query->Real(4)});
    }
    return static_cast<long>(rows.size());
  };
}

// --- Single values: LookupOrderedProduct, QuantityOrdered, OrderDetail ------------------------

Call ComponentLookupOrderedProduct(Shop& shop) {
  return [&shop, message = String()](const Pick& pick) mutable {
    String name, wanted = pick.productName;
    Long quantity = 0;
    return Found(shop.Component().LookupOrderedProduct(message, name, quantity, wanted), message);
  };
}

Call RawLookupOrderedProduct(Shop& shop) {
  auto query = std::make_shared<RawStatement>(
      shop.Raw(), "SELECT DISTINCT ProductName, Quantity FROM BasketList WHERE ProductName = ?1");
  return [query](const Pick& pick) {
    std::string name;
    long long quantity = 0;
    long rows = 0;
    query->Start().Bind(1, pick.productName);
    for (; query->Step(); ++rows) {
      if (rows > 0) continue;
      if (auto text = TextWithValue(*query, 0)) name = *text;
      if (!query->IsNull(1)) quantity = query->Int(1);
    }
    benchmark::DoNotOptimize(quantity);
    return rows;
  };
}

Call ComponentQuantityOrdered(Shop& shop) {
  return [&shop, message = String()](const Pick& pick) mutable {
    Long quantity = 0, orderId = pick.orderId, productId = pick.productId;
    return Found(shop.Component().QuantityOrdered(message, quantity, orderId, productId),
                 message);
  };
}

Call RawQuantityOrdered(Shop& shop) {
  auto query = std::make_shared<RawStatement>(
      shop.Raw(), "SELECT DISTINCT Quantity FROM OrderBasket WHERE OrderId = ?1 AND ProductId = ?2");
  return [query](const Pick& pick) {
    long long quantity = 0;
    long rows = 0;
    query->Start().Bind(1, pick.orderId).Bind(2, pick.productId);
    for (; query->Step(); ++rows) {
      if (rows == 0 && !query->IsNull(0)) quantity = query->Int(0);
    }
    benchmark::DoNotOptimize(quantity);
    return rows;
  };
}

Call ComponentOrderDetail(Shop& shop) {
  return [&shop, message = String()](const Pick& pick) mutable {
    Long customerId = 0, orderId = pick.orderId;
    String firstName, lastName, description;
    Date orderDate, deliveryDate;
    Integer delivery = 0;
    return Found(shop.Component().OrderDetail(message, customerId, firstName, lastName, orderDate,
                                              deliveryDate, delivery, description, orderId),
                 message);
  };
}

struct OrderFields {
  long long customerId = 0, delivery = 0;
  std::string firstName, lastName, description;
  std::optional<StoredTime> orderDate, deliveryDate;
};

Call RawOrderDetail(Shop& shop) {
  auto query = std::make_shared<RawStatement>(
      shop.Raw(),
      "SELECT CustomerId, FirstName, LastName, OrderDate, DeliveryDate, Delivery, Description "
      "FROM OrdersWithNames WHERE OrderId = ?1 ORDER BY OrderDate DESC");
  return [query](const Pick& pick) {
    OrderFields order;
    long rows = 0;
    query->Start().Bind(1, pick.orderId);
    for (; query->Step(); ++rows) {
      if (rows > 0) continue;
      order.customerId = query->Int(0);
      if (auto text = TextWithValue(*query, 1)) order.firstName = *text;
      if (auto text = TextWithValue(*query, 2)) order.lastName = *text;
      if (!query->IsNull(3)) order.orderDate = ParseStoredTime(query->Text(3));
      if (!query->IsNull(4)) order.deliveryDate = ParseStoredTime(query->Text(4));
      order.delivery = query->Int(5);
      if (auto text = TextWithValue(*query, 6)) order.description = *text;
    }
    benchmark::DoNotOptimize(order);
    return rows;
  };
}

// --- Writes: StartNewOrder, ProductToBuy, ModifyOrderQuantity, RemoveFromBasket, BuyAnOrder,
// DeleteAnOrder ------------------------------------------------------------------------------

Call ComponentStartNewOrder(Shop& shop) {
  return [&shop, message = String(), orderDate = ComponentDate(kNewOrderStamp)](
             const Pick& pick) mutable {
    Long orderId = 0, customerId = pick.customerId;
    Variant date = orderDate, deliveryDate, delivery = Integer{0},
            description = String(kNewOrderNote);
    return Stored(shop.Component().StartNewOrder(message, orderId, customerId, date, deliveryDate,
                                                 delivery, description),
                  message);
  };
}

Call RawStartNewOrder(Shop& shop) {
  auto insert = std::make_shared<RawStatement>(
      shop.Raw(),
      "INSERT INTO Orders (CustomerId, OrderDate, Delivery, Description) VALUES (?1, ?2, ?3, ?4)");
  return [&shop, insert](const Pick& pick) {
    RawTransaction transaction(shop.Raw());
    insert->Start().Bind(1, pick.customerId).Bind(2, kNewOrderStamp).Bind(3, 0LL);
    insert->Bind(4, kNewOrderNote).Run();
    benchmark::DoNotOptimize(sqlite3_last_insert_rowid(shop.Raw().Handle()));
    transaction.Commit();
    return 1L;
  };
}

Call ComponentProductToBuy(Shop& shop) {
  return [&shop, message = String()](const Pick& pick) mutable {
    Long orderId = pick.orderId, productId = pick.newProductId, quantity = pick.quantity;
    return Stored(shop.Component().ProductToBuy(message, orderId, productId, quantity), message);
  };
}

Call RawProductToBuy(Shop& shop) {
  auto insert = std::make_shared<RawStatement>(
      shop.Raw(), "INSERT INTO OrderBasket (OrderId, ProductId, Quantity) VALUES (?1, ?2, ?3)");
  return [&shop, insert](const Pick& pick) {
    RawTransaction transaction(shop.Raw());
    insert->Start().Bind(1, pick.orderId).Bind(2, pick.newProductId).Bind(3, pick.quantity).Run();
    transaction.Commit();
    return 1L;
  };
}

Call ComponentModifyOrderQuantity(Shop& shop) {
  return [&shop, message = String()](const Pick& pick) mutable {
    Long orderId = pick.orderId, productId = pick.productId;
    Variant quantity = pick.quantity + kQuantityChange;
    return Changed(shop.Component().ModifyOrderQuantity(message, orderId, productId, quantity),
                   message);
  };
}

Call RawModifyOrderQuantity(Shop& shop) {
  auto update = std::make_shared<RawStatement>(
      shop.Raw(),
      "UPDATE OrderBasket SET Quantity = ?3 WHERE rowid = "
      "(SELECT rowid FROM OrderBasket WHERE OrderId = ?1 AND ProductId = ?2 LIMIT 1)");
  return [&shop, update](const Pick& pick) {
    RawTransaction transaction(shop.Raw());
    update->Start().Bind(1, pick.orderId).Bind(2, pick.productId);
    update->Bind(3, pick.quantity + kQuantityChange).Run();
    long changed = RawChanged(shop.Raw());
    transaction.Commit();
    return changed;
  };
}

Call ComponentRemoveFromBasket(Shop& shop) {
  return [&shop, message = String()](const Pick& pick) mutable {
    Long orderId = pick.orderId, productId = pick.productId;
    return Changed(shop.Component().RemoveFromBasket(message, orderId, productId), message);
  };
}

Call RawRemoveFromBasket(Shop& shop) {
  auto remove = std::make_shared<RawStatement>(
      shop.Raw(), "DELETE FROM OrderBasket WHERE OrderId = ?1 AND ProductId = ?2");
  return [&shop, remove](const Pick& pick) {
    RawTransaction transaction(shop.Raw());
    remove->Start().Bind(1, pick.orderId).Bind(2, pick.productId).Run();
    long changed = RawChanged(shop.Raw());
    transaction.Commit();
    return changed;
  };
}

// Ships the order, on a date no generated order has.
Call ComponentBuyAnOrder(Shop& shop) {
  return [&shop, message = String(), shipped = ComponentDate(kDeliveryStamp)](
             const Pick& pick) mutable {
    Long orderId = pick.orderId;
    Date deliveryDate = shipped;
    Integer delivery = 1;
    return Changed(shop.Component().BuyAnOrder(message, orderId, deliveryDate, delivery), message);
  };
}

Call RawBuyAnOrder(Shop& shop) {
  auto update = std::make_shared<RawStatement>(
      shop.Raw(), "UPDATE Orders SET DeliveryDate = ?2, Delivery = ?3 WHERE OrderId = ?1");
  return [&shop, update](const Pick& pick) {
    RawTransaction transaction(shop.Raw());
    update->Start().Bind(1, pick.orderId).Bind(2, kDeliveryStamp).Bind(3, 1LL).Run();
    long changed = RawChanged(shop.Raw());
    transaction.Commit();
    return changed;
  };
}

Call ComponentDeleteAnOrder(Shop& shop) {
  return [&shop, message = String()](const Pick& pick) mutable {
    Long orderId = pick.orderId;
    return Changed(shop.Component().DeleteAnOrder(message, orderId), message);
  };
}

Call RawDeleteAnOrder(Shop& shop) {
  auto remove = std::make_shared<RawStatement>(shop.Raw(), "DELETE FROM Orders WHERE OrderId = ?1");
  return [&shop, remove](const Pick& pick) {
    RawTransaction transaction(shop.Raw());
    remove->Start().Bind(1, pick.orderId).Run();
    long changed = RawChanged(shop.Raw());
    transaction.Commit();
    return changed;
  };
}

// --- The pairs --------------------------------------------------------------------------------

// What the untimed upkeep does before each batch of calls of a method.
enum class Upkeep {
  kNone,             // the method only reads
  kRestore,          // undoes the last batch
  kSaveOrders,       // also saves the batch's orders with their lines, to put them back
  kSaveBasketLines,  // also saves the batch's basket lines, to put them back
};

struct Method {
  const char* name;
  Call (*component)(Shop&);
  Call (*raw)(Shop&);
  Upkeep upkeep = Upkeep::kNone;
};

const Method kMethods[] = {
    {"StartNewOrder", ComponentStartNewOrder, RawStartNewOrder, Upkeep::kRestore},
    {"ProductToBuy", ComponentProductToBuy, RawProductToBuy, Upkeep::kRestore},
    {"ModifyOrderQuantity", ComponentModifyOrderQuantity, RawModifyOrderQuantity,
     Upkeep::kSaveBasketLines},
    {"RemoveFromBasket", ComponentRemoveFromBasket, RawRemoveFromBasket,
     Upkeep::kSaveBasketLines},
    {"BuyAnOrder", ComponentBuyAnOrder, RawBuyAnOrder, Upkeep::kSaveOrders},
    {"DeleteAnOrder", ComponentDeleteAnOrder, RawDeleteAnOrder, Upkeep::kSaveOrders},
    {"BasketList", [](Shop& shop) { return ComponentNamesCall(shop, &brindleway::BasketList); },
     [](Shop& shop) { return RawNamesCall(shop, kRawBasketList); }},
    {"GetOrderedProducts",
     [](Shop& shop) { return ComponentNamesCall(shop, &brindleway::GetOrderedProducts); },
     [](Shop& shop) { return RawNamesCall(shop, kRawOrderedProducts); }},
    {"BasketTable", ComponentBasketTable, RawBasketTable},
    {"LookupOrderedProduct", ComponentLookupOrderedProduct, RawLookupOrderedProduct},
    {"QuantityOrdered", ComponentQuantityOrdered, RawQuantityOrdered},
    {"ListOfOrders", [](Shop& shop) { return ComponentListingCall(shop, kAllOrders); },
     [](Shop& shop) { return RawListingCall(shop, kAllOrders); }},
    {"ListOpenOrders", [](Shop& shop) { return ComponentListingCall(shop, kOpenOrders); },
     [](Shop& shop) { return RawListingCall(shop, kOpenOrders); }},
    {"ListShippedOrders", [](Shop& shop) { return ComponentListingCall(shop, kShippedOrders); },
     [](Shop& shop) { return RawListingCall(shop, kShippedOrders); }},
    {"OrderDetail", ComponentOrderDetail, RawOrderDetail},
};

// Empty when both sides make the same texts for the first picks' customers (the three
// listings) and orders (the two name lists); else the first difference.
std::string CompareTexts(Shop& shop) {
  constexpr std::size_t kCompared = 20;
  std::size_t lines = 0;
  auto differ = [](const char* what, Long id, const std::vector<std::string>& component,
                   const std::vector<std::string>& raw) -> std::string {
    if (component == raw) return "";
    auto [mine, theirs] = std::mismatch(component.begin(), component.end(), raw.begin(), raw.end());
    auto shown = [](auto at, const auto& texts) {
      return at == texts.end() ? std::string("(none)") : "[" + *at + "]";
    };
    return std::string(what) + " of " + std::to_string(id) + " differ at line " +
           std::to_string(mine - component.begin() + 1) + ": component " +
           shown(mine, component) + ", raw " + shown(theirs, raw);
  };
  std::vector<std::string> raw;
  for (std::size_t i = 0; i < std::min(kCompared, shop.Picks().size()); ++i) {
    const Pick& pick = shop.Picks()[i];
    for (const Listing* listing : {&kAllOrders, &kOpenOrders, &kShippedOrders}) {
      auto collection = std::make_shared<Collection>();
      String message, separator(kSeparator);
      Long customerId = pick.customerId;
      Found(listing->component(shop.Component(), message, collection, separator, customerId),
            message);
      RawStatement query(shop.Raw(), listing->rawSql);
      RawLines(query, *listing, customerId, raw);
      if (auto difference = differ("order lines", customerId, Texts(*collection), raw);
          !difference.empty()) {
        return difference;
      }
      lines += raw.size();
    }
    for (auto [method, sql] : {std::pair{&brindleway::BasketList, kRawBasketList},
                               std::pair{&brindleway::GetOrderedProducts, kRawOrderedProducts}}) {
      auto collection = std::make_shared<Collection>();
      String message;
      Long orderId = pick.orderId;
      Found((shop.Component().*method)(message, collection, orderId), message);
      RawStatement query(shop.Raw(), sql);
      RawNames(query, orderId, raw);
      if (auto difference = differ("product names", orderId, Texts(*collection), raw);
          !difference.empty()) {
        return difference;
      }
      lines += raw.size();
    }
  }
  return lines > 0 ? "" : "no texts to compare";
}

void RunUpkeep(Shop& shop, Upkeep upkeep, std::size_t next) {
  shop.Restore();
  if (upkeep == Upkeep::kSaveOrders) shop.SaveOrders(next, kBatch);
  if (upkeep == Upkeep::kSaveBasketLines) shop.SaveBasketLines(next, kBatch);
}

void RunSide(benchmark::State& state, const Method* method, bool component) {
  Shop* shop = nullptr;
  Call call;
  try {
    shop = &OpenShop(static_cast<long>(state.range(0)));
    if (!shop->textsCompared) shop->textsCompared = CompareTexts(*shop);
    if (!shop->textsCompared->empty()) throw std::runtime_error(*shop->textsCompared);
    call = component ? method->component(*shop) : method->raw(*shop);
  } catch (const std::exception& failure) {
    state.SkipWithError(failure.what());
    return;
  }
  const std::vector<Pick>& picks = shop->Picks();
  std::size_t next = 0;
  long rows = 0;
  for (auto _ : state) {
    try {
      if (method->upkeep != Upkeep::kNone && next % kBatch == 0) {
        state.PauseTiming();
        RunUpkeep(*shop, method->upkeep, next);
        state.ResumeTiming();
      }
      rows += call(picks[next++ % picks.size()]);
    } catch (const std::exception& failure) {
      state.SkipWithError(failure.what());
      break;
    }
  }
  if (method->upkeep != Upkeep::kNone) {
    try {
      shop->Restore();
    } catch (const std::exception& failure) {
      state.SkipWithError(failure.what());
    }
  }
  state.counters["rows"] =
      benchmark::Counter(static_cast<double>(rows), benchmark::Counter::kAvgIterations);
}

// The store sizes to run: BRINDLEWAY_BENCH_ORDERS, comma-separated, else 1,000 and 100,000.
std::vector<long> StoreSizes() {
  const char* listed = std::getenv("BRINDLEWAY_BENCH_ORDERS");
  if (!listed || !*listed) return {1'000, 100'000};
  std::vector<long> sizes;
  for (std::string_view rest = listed; !rest.empty();) {
    const std::string_view item = rest.substr(0, rest.find(','));
    rest.remove_prefix(std::min(rest.size(), item.size() + 1));
    long size = 0;
    auto [end, error] = std::from_chars(item.data(), item.data() + item.size(), size);
    if (error != std::errc() || end != item.data() + item.size() || size < 1) {
      throw std::invalid_argument("BRINDLEWAY_BENCH_ORDERS: not a store size: " +
                                  std::string(item));
    }
    sizes.push_back(size);
  }
  return sizes;
}

}  // namespace
}  // namespace brindlewayProj::bench

int main(int argc, char** argv) {
  using namespace brindlewayProj;
  platform::SetRegionalLocale("en_US");
  std::vector<long> sizes;
  try {
    sizes = bench::StoreSizes();
  } catch (const std::invalid_argument& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 2;
  }
  // Size by size, so that each store is opened once; the two sides of a pair run back to back.
  for (long size : sizes) {
    for (const bench::Method& method : bench::kMethods) {
      for (bool component : {true, false}) {
        const std::string name = std::string(method.name) + (component ? "/component" : "/raw");
        benchmark::RegisterBenchmark(name.c_str(), bench::RunSide, &method, component)
            ->Arg(size)
            ->UseRealTime()
            ->Unit(benchmark::kMicrosecond);
      }
    }
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  bench::CloseShop();
  return 0;
}
