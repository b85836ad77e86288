// Long random runs of the order and basket methods on a sample store, every answer checked
// against an in-memory model. BRINDLEWAY_MODEL_SEED and BRINDLEWAY_MODEL_STEPS override the run.
#include <algorithm>
#include <cstdio>
#include <map>
#include <optional>
#include <random>
#include <set>

#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

using std::to_string;
using Text = std::optional<String>;  // none for Null, and for empty and blank texts

struct Order {
  Long customer;
  std::optional<Date> ordered, delivered;
  Integer delivery;
  Text description;
};
struct BasketRow {
  Long order, product, quantity;
};

// A date as the store keeps it ("YYYY-MM-DD HH:MM:SS"); "NULL" and the zero date are none.
std::optional<Date> StoredDate(const std::string& text) {
  int y, mo, d, h, mi, s;
  if (std::sscanf(text.c_str(), "%d-%d-%d %d:%d:%d", &y, &mo, &d, &h, &mi, &s) != 6) return {};
  const Date date{DateSerial(y, mo, d).serial + TimeSerial(h, mi, s).serial};
  return date.serial == 0 ? std::nullopt : std::optional(date);
}
Text StoredText(const std::string& text) {
  return text == "NULL" || Trim(text).empty() ? std::nullopt : Text(text);
}
// A date as the listings write it; no date is "<Empty>".
String Listed(std::optional<Date> date) { return date ? CStr(Variant(*date)) : "<Empty>"; }
const String kRelated =
    "You cannot add or change a record because a related record is required in table '";

// A caller's collection kept across calls, with what it should hold.
struct KeptList {
  std::shared_ptr<Collection> list = std::make_shared<Collection>();
  std::vector<String> expected;
};

class ModelSaleTest : public ::testing::Test {
 protected:
  ModelSaleTest() : file_(MakeStore(dir_)) {
    shop_ = std::make_unique<brindleway>();
    // Beside the samples: Null and empty names, padded and blank texts, no date, the zero date.
    SqlRows(
        file_,
        "INSERT INTO Customers VALUES (90, ' Ann', NULL);"
        "INSERT INTO Products VALUES (91, NULL, 'V', 1), (92, '', 'V', 2), (93, ' Mug ', 'V', 3);"
        "INSERT INTO Orders VALUES (90, 90, NULL, '1899-12-30 00:00:00', 1, '   '),"
        " (91, 90, '2026-06-30 14:05:00', NULL, 0, ' lead');"
        "INSERT INTO OrderBasket VALUES (90, 91, 1), (90, 92, 2), (90, 91, 3), (91, 93, 1);");
    for (auto& c : SqlRows(file_, "SELECT CustomerId, FirstName, LastName FROM Customers"))
      customers_[std::stoi(c[0])] = {StoredText(c[1]), StoredText(c[2])};
    for (auto& p : SqlRows(file_, "SELECT ProductId, ProductName FROM Products"))
      products_[std::stoi(p[0])] = p[1] == "NULL" ? std::nullopt : Text(p[1]);
    for (auto& o : SqlRows(file_, "SELECT * FROM Orders")) {
      orders_[std::stoi(o[0])] = {std::stoi(o[1]), StoredDate(o[2]), StoredDate(o[3]),
                                  Integer(std::stoi(o[4])), StoredText(o[5])};
    }
    // Rows no one has changed yet come in the order they were added, on either engine.
    for (auto& b : SqlRows(file_, "SELECT * FROM OrderBasket"))
      basket_.push_back({std::stoi(b[0]), std::stoi(b[1]), std::stoi(b[2])});
    lastKey_ = orders_.rbegin()->first;
  }

  int Roll(std::size_t n) { return std::uniform_int_distribution<int>(0, int(n) - 1)(random_); }
  bool Chance(int percent) { return Roll(100) < percent; }
  template <class Map>
  auto AnyKey(const Map& map) {
    return std::next(map.begin(), Roll(map.size()))->first;
  }
  ::testing::ScopedTrace Call(const String& method, const String& arguments) {
    method_ = method;
    return ::testing::ScopedTrace(__FILE__, __LINE__, method + " " + arguments);
  }
  void Expect(Integer status, Integer expected, const char* level, const String& text) {
    EXPECT_EQ(status, expected) << msg_;
    EXPECT_EQ(msg_, "<" + String(level) + ": brindleway." + method_ + "> " + text);
  }
  // The status and message of a reader that found `rows`.
  void ExpectFound(Integer status, std::size_t rows) {
    if (rows == 0) return Expect(status, 0, "CompWarning", "Did not find any records");
    Expect(status, Integer(rows), "CompInfo", "Found " + to_string(rows) + " records");
  }
  // A list holds the rows found, else what it held; Nothing fails on the first row found.
  bool ExpectList(KeptList& kept, const std::vector<String>& rows, bool ordered,
                  const std::function<Integer(std::shared_ptr<Collection>&)>& call) {
    std::shared_ptr<Collection> nothing;
    if (Chance(4) && !rows.empty()) {
      Expect(call(nothing), -1, "CompError", "Object variable or With block variable not set");
      return false;
    }
    ExpectFound(call(rows.empty() && Chance(4) ? nothing : kept.list), rows.size());
    if (!rows.empty()) kept.expected = rows;
    std::vector<String> entries = Entries(kept.list), expected = kept.expected;
    if (!ordered) std::ranges::sort(entries), std::ranges::sort(expected);
    EXPECT_EQ(entries, expected);
    return true;
  }
  // Mostly a stored order; else one deleted before or one that never was.
  Long PickOrder() {
    if (!orders_.empty() && !Chance(15)) return AnyKey(orders_);
    std::vector<Long> unknown = deleted_;
    unknown.insert(unknown.end(), {0, -3, lastKey_ + 1000});
    return unknown[Roll(unknown.size())];
  }
  // Mostly the order of a basket row, so that the basket methods find rows.
  Long PickBasketOrder() {
    return !basket_.empty() && Chance(60) ? basket_[Roll(basket_.size())].order : PickOrder();
  }
  // Mostly a product of the order's basket; sometimes one that is no product.
  Long PickProduct(Long order) {
    auto rows = RowsOf(order);
    if (!rows.empty() && Chance(60)) return rows[Roll(rows.size())]->product;
    return Chance(92) ? AnyKey(products_) : 999;
  }
  Long PickCustomer() { return Chance(90) ? AnyKey(customers_) : 777; }
  // The basket rows of an order (and product), in the order they were added.
  std::vector<BasketRow*> RowsOf(Long order, std::optional<Long> product = {}) {
    std::vector<BasketRow*> rows;
    for (auto& row : basket_)
      if (row.order == order && product.value_or(row.product) == row.product) rows.push_back(&row);
    return rows;
  }

  // On PostgreSQL rows come in their places in the table, not as added: of several rows of a
  // pair one changed, and the rows take the quantities in the order the workspace reads them.
  void FollowTheStore(const std::vector<BasketRow*>& rows, Long quantity) {
    auto database = dao::DBEngine().Workspaces(0)->OpenDatabase(file_.string());
    auto stored = database->OpenRecordset(
        "Select [Quantity] From [OrderBasket] Where [OrderId] = " + to_string(rows[0]->order) +
        " And [ProductId] = " + to_string(rows[0]->product));
    std::multiset<Long> before, after;
    for (BasketRow* row : rows) {
      before.insert(row->quantity);
      after.insert(row->quantity = CLng(stored->Fields()->Item(Long(0))->Value()));
      stored->MoveNext();
    }
    ASSERT_TRUE(after.contains(quantity));
    after.erase(after.find(quantity));
    EXPECT_TRUE(std::ranges::includes(before, after)) << "another row than one changed";
  }

  // A bad value fails before the store sees the row; a row the store refuses has its key
  // already, which is never stored for another order.
  void StartNewOrder() {
    const String descriptions[] = {"Gift wrap", "  Leave at the door ", "   ", ""};
    const Variant deliveries[] = {Integer(0),  Integer(1),      Integer(2),
                                  Long(40000), Variant::Null(), Variant::Missing()};
    const char* failures[] = {"", "", "", "Overflow", "Invalid use of Null", "Type mismatch"};
    Long key = -5, customer = PickCustomer();
    Date ordered{DateSerial(2026, 7, 1).serial + (++days_)};
    const int dateKind = Roll(10);  // 0 to 5 a Date, 6 with a time, 7 and 8 text, 9 no date
    if (dateKind == 6) ordered.serial += TimeSerial(Roll(24), Roll(60), Roll(60)).serial;
    const String dateText = CStr(Variant(ordered));
    Variant orderDate = dateKind < 7 ? Variant(ordered) : Variant(" " + dateText + " ");
    if (dateKind == 9) orderDate = Variant("soon");
    const int deliveryKind = Chance(90) ? Roll(3) : 3 + Roll(3);
    const String text = descriptions[Roll(4)], stored = Trim(text);
    const bool describe = Chance(80), deliver = Chance(30);
    const Date deliveredOn{ordered.serial + 3};
    Variant deliveryDate = deliver ? Variant(deliveredOn) : Variant(),
            delivery = deliveries[deliveryKind],
            description = describe ? Variant(text) : Variant::Missing();
    auto trace = Call("StartNewOrder", "for customer " + to_string(customer));
    const Integer status =
        describe ? shop_->StartNewOrder(msg_, key, customer, orderDate, deliveryDate, delivery,
                                        description)
                 : shop_->StartNewOrder(msg_, key, customer, orderDate, deliveryDate, delivery);
    const String error = dateKind == 9 ? "Type mismatch" : failures[deliveryKind];
    if (!error.empty() || !customers_.contains(customer)) {
      Expect(status, -1, "CompError", error.empty() ? kRelated + "Customers'." : error);
      EXPECT_TRUE(error.empty() ? key > lastKey_ : key == -5) << "key " << key;
      if (error.empty()) lastKey_ = key;
      return;
    }
    Expect(status, 0, "CompInfo", "Success");
    EXPECT_GT(key, lastKey_) << "keys grow, and a deleted order's key is not used again";
    EXPECT_EQ(CStr(orderDate), dateKind < 7 ? CStr(Variant(ordered)) : dateText);
    EXPECT_EQ(IsMissing(description) ? "-" : CStr(description), describe ? stored : "-");
    lastKey_ = key;
    orders_[key] = {customer, ordered, deliver ? std::optional(deliveredOn) : std::nullopt,
                    CInt(delivery), describe && !stored.empty() ? Text(stored) : std::nullopt};
  }

  void ProductToBuy() {
    Long order = PickOrder(), quantity = Roll(12) - 2;
    Long product = orders_.contains(order) ? PickProduct(order) : AnyKey(products_);
    auto trace = Call("ProductToBuy", to_string(order) + "/" + to_string(product));
    const Integer status = shop_->ProductToBuy(msg_, order, product, quantity);
    if (!orders_.contains(order) || !products_.contains(product)) {
      return Expect(status, -1, "CompError",
                    kRelated + (orders_.contains(order) ? "Products'." : "Orders'."));
    }
    Expect(status, 0, "CompInfo", "Success");
    basket_.push_back({order, product, quantity});
  }

  // The first row added of the pair changes; a text is trimmed in the caller's Variant.
  void ModifyOrderQuantity() {
    Long order = PickBasketOrder(), product = PickProduct(order), number = Roll(20);
    const std::tuple<Variant, std::optional<Long>, String> values[] = {
        {Variant(number), number, to_string(number)},
        {Variant::Missing(), {}, "missing"},
        {Variant(" 7 "), 7, "7"},
        {Variant(2.5), 2, "2.5"},
        {Variant("   "), {}, ""},
        {Variant("seven"), {}, "seven"}};
    const int pick = Chance(60) ? 0 : 1 + Roll(5);
    auto [value, quantity, afterwards] = values[pick];
    const auto rows = RowsOf(order, product);
    auto trace = Call("ModifyOrderQuantity",
                      to_string(order) + "/" + to_string(product) + " with " + afterwards);
    const Integer status = pick == 1 ? shop_->ModifyOrderQuantity(msg_, order, product)
                                     : shop_->ModifyOrderQuantity(msg_, order, product, value);
    if (rows.empty()) return Expect(status, 0, "CompInfo", "No records found. Nothing to update");
    if (pick == 5) Expect(status, -1, "CompError", "Type mismatch");
    if (pick != 5) Expect(status, 1, "CompInfo", "Success");
    EXPECT_EQ(IsMissing(value) ? "missing" : JoinText(value), afterwards);
    if (!quantity) return;
    if (TestEngineIsPostgres() && rows.size() > 1) return FollowTheStore(rows, *quantity);
    rows[0]->quantity = *quantity;
  }

  // The zero date leaves the stored delivery date alone; Delivery is always written.
  void BuyAnOrder() {
    Long order = PickOrder();
    Date delivered = Chance(25) ? Date{} : DateSerial(2026, 9, 1 + Roll(200));
    Integer delivery = Roll(3);
    auto trace = Call("BuyAnOrder", to_string(order));
    const Integer status = shop_->BuyAnOrder(msg_, order, delivered, delivery);
    const auto found = orders_.find(order);
    if (found == orders_.end())
      return Expect(status, 0, "CompInfo", "No records found. Nothing to update");
    Expect(status, 1, "CompInfo", "Success");
    if (delivered.serial != 0) found->second.delivered = delivered;
    found->second.delivery = delivery;
  }

  // RemoveFromBasket takes the rows of one product, DeleteAnOrder the order and its basket.
  void Delete(bool wholeOrder) {
    Long order = wholeOrder ? PickOrder() : PickBasketOrder(), product = PickProduct(order);
    auto trace = Call(wholeOrder ? "DeleteAnOrder" : "RemoveFromBasket",
                      to_string(order) + (wholeOrder ? "" : "/" + to_string(product)));
    const Integer status = wholeOrder ? shop_->DeleteAnOrder(msg_, order)
                                      : shop_->RemoveFromBasket(msg_, order, product);
    const std::size_t removed =
        wholeOrder ? orders_.erase(order) : std::erase_if(basket_, [&](auto& r) {
          return r.order == order && r.product == product;
        });
    if (removed == 0) return Expect(status, 0, "CompError", "No records found");
    Expect(status, Integer(removed), "CompInfo", to_string(removed) + " records deleted");
    if (!wholeOrder) return;
    std::erase_if(basket_, [&](const BasketRow& r) { return r.order == order; });
    deleted_.push_back(order);
  }

  // BasketList in name order, GetOrderedProducts each name once in any order.
  void NameList(bool distinct) {
    Long order = PickBasketOrder();
    std::vector<Text> stored;  // sorted with Null first
    for (auto* row : RowsOf(order)) stored.push_back(products_[row->product]);
    std::ranges::sort(stored);
    if (distinct) stored.erase(std::unique(stored.begin(), stored.end()), stored.end());
    std::vector<String> names;
    for (auto& name : stored) names.push_back(name.value_or("<Empty>"));
    auto trace = Call(distinct ? "GetOrderedProducts" : "BasketList", to_string(order));
    ExpectList(distinct ? productList_ : basketList_, names, !distinct, [&](auto& list) {
      return distinct ? shop_->GetOrderedProducts(msg_, list, order)
                      : shop_->BasketList(msg_, list, order);
    });
  }

  // The distinct quantities of the pair; the first row added gives the one read.
  void QuantityOrdered() {
    Long order = PickBasketOrder(), product = PickProduct(order), quantity = -77;
    std::vector<Long> quantities;
    for (auto* row : RowsOf(order, product))
      if (std::ranges::count(quantities, row->quantity) == 0) quantities.push_back(row->quantity);
    auto trace = Call("QuantityOrdered", to_string(order) + "/" + to_string(product));
    ExpectFound(shop_->QuantityOrdered(msg_, quantity, order, product), quantities.size());
    if (TestEngineIsPostgres() && quantities.size() > 1) {  // see FollowTheStore
      EXPECT_NE(std::ranges::find(quantities, quantity), quantities.end());
    } else {
      EXPECT_EQ(quantity, quantities.empty() ? -77 : quantities[0]);
    }
  }

  // All orders of a customer newest first, the open ones in any order, the shipped ones newest
  // first with their delivery date. An empty separator becomes ", ".
  void Listing(int kind) {
    const String separators[] = {", ", " | ", ""};
    Long customer = PickCustomer();
    String separator = separators[Roll(3)];
    const String given = separator, used = given.empty() ? ", " : given;
    std::vector<std::pair<double, String>> rows;
    for (auto& [key, o] : orders_) {
      if (o.customer != customer || (kind > 0 && o.delivery != kind - 1)) continue;
      String text = to_string(key) + used + Listed(o.ordered);
      if (kind == 2) text += used + Listed(o.delivered);
      rows.push_back(
          {o.ordered.value_or(Date{-1e6}).serial, text + used + o.description.value_or("<Empty>")});
    }
    std::ranges::stable_sort(rows, std::greater{}, &std::pair<double, String>::first);
    std::vector<String> texts;
    for (auto& row : rows) texts.push_back(row.second);
    const char* methods[] = {"ListOfOrders", "ListOpenOrders", "ListShippedOrders"};
    auto trace = Call(methods[kind], to_string(customer) + " with '" + given + "'");
    Integer ignored = 1;
    const bool listed = ExpectList(lists_[kind], texts, kind != 1, [&](auto& list) {
      return kind == 0   ? shop_->ListOfOrders(msg_, list, separator, customer)
             : kind == 1 ? shop_->ListOpenOrders(msg_, list, separator, customer, ignored)
                         : shop_->ListShippedOrders(msg_, list, separator, customer);
    });
    EXPECT_TRUE(!listed || separator == (rows.empty() ? given : used)) << separator;
    EXPECT_EQ(ignored, 1) << "ListOpenOrders wrote its Delivery";
  }

  // A client's own transaction around the calls, failing ones included: lasting only on commit,
  // undone by rollback (the keys handed out stay used).
  void ClientTransaction() {
    auto workspace = dao::DBEngine().Workspaces(0);
    auto trace = Call(saved_ ? "the client's transaction" : "BeginTrans", "");
    if (!saved_) {
      workspace->BeginTrans();
      saved_ = {orders_, basket_, OrdersAndBasket(file_)};
      return;
    }
    EXPECT_EQ(OrdersAndBasket(file_), std::get<2>(*saved_)) << "changes lasting too early";
    if (Chance(50)) {
      workspace->CommitTrans();
    } else {
      workspace->Rollback();
      std::tie(orders_, basket_, std::ignore) = *saved_;
    }
    saved_.reset();
    EXPECT_THROW(workspace->Rollback(), platform::Error) << "a transaction stayed open";
  }

  // Fields without a value leave the caller's variables as they were.
  void OrderDetail() {
    Long order = PickOrder(), customer = -1;
    String first = "f", last = "l", description = "d";
    Date ordered{1}, delivered{2};
    Integer delivery = -9;
    auto trace = Call("OrderDetail", to_string(order));
    const Integer status = shop_->OrderDetail(msg_, customer, first, last, ordered, delivered,
                                              delivery, description, order);
    const auto found = orders_.find(order);
    ExpectFound(status, found != orders_.end());
    using Outs = std::tuple<Long, String, String, String, String, Integer, String>;
    Outs expected{-1, "f", "l", Listed(Date{1}), Listed(Date{2}), -9, "d"};
    if (const Order* o = found == orders_.end() ? nullptr : &found->second) {
      const auto& [firstName, lastName] = customers_.at(o->customer);
      expected = Outs(o->customer, firstName.value_or("f"), lastName.value_or("l"),
                      Listed(o->ordered.value_or(Date{1})), Listed(o->delivered.value_or(Date{2})),
                      o->delivery, o->description.value_or("d"));
    }
    EXPECT_EQ(
        Outs(customer, first, last, Listed(ordered), Listed(delivered), delivery, description),
        expected);
  }

  ComponentFolder dir_;
  std::filesystem::path file_;
  std::unique_ptr<brindleway> shop_;
  String msg_, method_;
  std::mt19937 random_;
  std::map<Long, std::pair<Text, Text>> customers_;  // first and last name
  std::map<Long, Text> products_;                    // Null names are none
  std::map<Long, Order> orders_;
  std::vector<BasketRow> basket_;  // in the order the rows were added
  std::vector<Long> deleted_;
  Long lastKey_ = 0;
  int days_ = 0;
  KeptList basketList_, productList_, lists_[3];
  // At the client's BeginTrans: the orders, the basket, and the rows stored.
  std::optional<std::tuple<decltype(orders_), decltype(basket_), std::vector<SqlRow>>> saved_;
};

TEST_F(ModelSaleTest, RandomSalesAnswerAsTheModelSays) {
  const char* seedText = std::getenv("BRINDLEWAY_MODEL_SEED");
  const char* stepsText = std::getenv("BRINDLEWAY_MODEL_STEPS");
  const unsigned seed = seedText ? std::stoul(seedText) : 20260701u;
  const int steps = stepsText ? std::stoi(stepsText) : 1500;
  random_.seed(seed);
  const double weights[] = {10, 18, 7, 6, 7, 3, 7, 5, 6, 2, 6, 5, 5, 6};
  const std::function<void()> calls[] = {
      [&] { StartNewOrder(); },     [&] { ProductToBuy(); }, [&] { ModifyOrderQuantity(); },
      [&] { Delete(false); },       [&] { BuyAnOrder(); },   [&] { Delete(true); },
      [&] { NameList(false); },     [&] { NameList(true); }, [&] { QuantityOrdered(); },
      [&] { ClientTransaction(); }, [&] { Listing(0); },     [&] { Listing(1); },
      [&] { Listing(2); },          [&] { OrderDetail(); }};
  std::discrete_distribution<std::size_t> pick(std::begin(weights), std::end(weights));
  for (int step = 1; step <= steps && !HasFailure(); ++step) {
    SCOPED_TRACE("seed " + to_string(seed) + ", step " + to_string(step));
    calls[pick(random_)]();
  }
  if (saved_) dao::DBEngine().Workspaces(0)->Rollback();
  EXPECT_TRUE(dir_.boxes.shown().empty());
}

}  // namespace
}  // namespace brindlewayProj::testing
