// Sales through the public methods, checked row by row against what the calls were told: a
// seller killed with SIGKILL at random moments, many times over on one store, and sellers on the
// threads of two processes at once. A seller writes "try <call>" before each call and
// "ok <new key>" after each call that answered as it must; from those lines alone a model knows
// every row the store must hold. Besides, an object called from another thread than its own
// refuses the call and stays usable on its own.
//
// After each kill the store must be sound (integrity and foreign keys), hold every write the
// seller had been told was stored, and hold the one call under way whole or not at all: no
// order shipped without its date, no order deleted with its basket left behind. A kill ends the
// process, not the machine, so this proves the commits, not the disk's flushes.
// BRINDLEWAY_CRASH_SEED and BRINDLEWAY_CRASH_KILLS override the seed and the number of kills.
#include <brindleway/dispatch.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <map>
#include <optional>
#include <random>
#include <sstream>
#include <thread>

#include "server/class_factory.h"
#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

constexpr int kThreads = 4;  // sellers in each of the two processes
using Say = std::function<void(const std::string& line)>;

// A call as a seller announces it: "start 31 2026-03-05 Sale-4" (customer, order date,
// description), "buy 17 52 3" and "modify 17 52 8" (order, product, quantity), "count 17 52"
// (QuantityOrdered), "remove 17 52", "ship 17 2026-04-01" (delivery date, Delivery 1),
// "delete 17".
using Call = std::vector<std::string>;

Call Split(const std::string& line) {
  std::istringstream words(line);
  Call call;
  for (std::string word; words >> word;) call.push_back(word);
  return call;
}

// Makes the call; answers its status and, for "start", the new key in `key`.
Integer Perform(brindleway& shop, const Call& call, Long& key, String& msg) {
  Long id = std::stol(call[1]), product = 0, quantity = 0;
  int year = 0, month = 0, day = 0;
  if (call.size() > 2) std::sscanf(call[2].c_str(), "%d-%d-%d", &year, &month, &day);
  Date date = DateSerial(year, month, day);
  if (call[0] == "start") {
    Variant ordered(date), none, open(Integer(0)), text{String(call[3])};
    return shop.StartNewOrder(msg, key, id, ordered, none, open, text);
  }
  Integer shipped = 1;
  if (call[0] == "ship") return shop.BuyAnOrder(msg, id, date, shipped);
  if (call[0] == "delete") return shop.DeleteAnOrder(msg, id);
  product = std::stol(call[2]);
  if (call[0] == "remove") return shop.RemoveFromBasket(msg, id, product);
  if (call[0] == "count") return shop.QuantityOrdered(msg, quantity, id, product);
  quantity = std::stol(call[3]);
  Variant newQuantity(quantity);
  if (call[0] == "buy") return shop.ProductToBuy(msg, id, product, quantity);
  return shop.ModifyOrderQuantity(msg, id, product, newQuantity);
}

// Random sales of `customer`, `sales` of them (for ever when 0), through an object of the
// thread's own. Every call finds its rows, so any other answer than the one expected is a
// fault, which ends the sales with "fail ...". A call refused by a lock conflict is a valid
// answer under contention; it stored nothing, and is made again.
void Sell(std::uint32_t seed, Long customer, int sales, const Say& say) {
  brindleway shop;
  say("ready");
  std::mt19937 random(seed);
  auto number = [&](int from, int to) { return from + int(random() % (to - from + 1)); };
  auto pick = [&](int from, int to) { return " " + std::to_string(number(from, to)); };
  auto day = [&] {
    char text[16];
    std::snprintf(text, sizeof text, " 2026-%02d-%02d", number(1, 12), number(1, 28));
    return std::string(text);
  };
  auto run = [&](const std::string& line, Integer expected) {
    say("try " + line);
    Long key = 0;
    String msg;
    Integer status = -1;
    do {
      status = Perform(shop, Split(line), key, msg);
    } while (status == -1 && msg.ends_with("Could not update; currently locked."));
    if (status != expected) throw std::runtime_error(line + ": " + msg);
    say("ok " + std::to_string(key));
    return " " + std::to_string(key);
  };
  try {
    for (int sale = 1; sales == 0 || sale <= sales; ++sale) {
      std::string order =
          run("start " + std::to_string(customer) + day() + " Sale-" + std::to_string(sale), 0);
      std::vector<std::string> products{" 51", " 52", " 53", " 54", " 55"};
      std::shuffle(products.begin(), products.end(), random);
      products.resize(number(1, 3));
      for (const auto& product : products) run("buy" + order + product + pick(1, 5), 0);
      run("count" + order + products[0], 1);
      if (number(0, 1)) run("modify" + order + products[0] + pick(6, 9), 1);
      if (products.size() > 1 && number(0, 3) == 0) run("remove" + order + products[1], 1);
      if (number(0, 1)) run("ship" + order + day(), 1);
      if (number(0, 5) == 0) run("delete" + order, 1);
    }
  } catch (const std::exception& failure) {
    say(std::string("fail ") + failure.what());
  }
}

// What the store must hold, row by row as OrdersAndBasket reads them.
struct Model {
  std::map<Long, SqlRow> orders;
  std::map<std::pair<Long, Long>, SqlRow> basket;  // by order and product
  int acknowledged = 0;

  void Apply(const Call& call, Long key) {
    const Long order = call[0] == "start" ? key : std::stol(call[1]);
    if (call[0] == "start") {
      EXPECT_FALSE(orders.contains(key)) << "the key " << key << " was given twice";
      orders[order] = {std::to_string(key), call[1], call[2] + " 00:00:00", "NULL", "0", call[3]};
    } else if (call[0] == "buy" || call[0] == "modify") {
      basket[{order, std::stol(call[2])}] = {call[1], call[2], call[3]};
    } else if (call[0] == "remove") {
      basket.erase({order, std::stol(call[2])});
    } else if (call[0] == "ship") {
      orders.at(order)[3] = call[2] + " 00:00:00";
      orders.at(order)[4] = "1";
    } else if (call[0] == "delete") {
      orders.erase(order);
      std::erase_if(basket, [&](const auto& row) { return row.first.first == order; });
    }
  }
  // Applies the calls acknowledged in `said`; answers the one announced last and not
  // acknowledged, if any.
  std::optional<Call> Replay(const std::string& said) {
    std::istringstream lines(said);
    std::optional<Call> pending;
    for (std::string line; std::getline(lines, line);) {
      EXPECT_FALSE(line.starts_with("fail")) << line;
      if (line.starts_with("try ")) pending = Split(line.substr(4));
      if (!line.starts_with("ok ") || !pending) continue;
      Apply(*pending, std::stol(line.substr(3)));
      pending.reset();
      ++acknowledged;
    }
    return pending;
  }
  std::vector<SqlRow> Rows() const {
    std::vector<SqlRow> rows;
    for (const auto& [id, row] : orders) rows.push_back(row);
    for (const auto& [id, row] : basket) rows.push_back(row);
    return rows;
  }
};

// The rows that set `expected` and `stored` apart.
std::string Difference(std::vector<SqlRow> expected, std::vector<SqlRow> stored) {
  std::ranges::sort(expected), std::ranges::sort(stored);
  std::vector<SqlRow> missing, extra;
  std::ranges::set_difference(expected, stored, std::back_inserter(missing));
  std::ranges::set_difference(stored, expected, std::back_inserter(extra));
  return "\n  missing: " + ::testing::PrintToString(missing) +
         "\n  extra: " + ::testing::PrintToString(extra);
}

// A store with five products and a customer for each seller, 31 on.
std::filesystem::path MakeSalesStore(const TempDir& dir) {
  auto file = MakeStore(dir, false);
  std::string sql =
      "INSERT INTO Products VALUES (51, 'Lamp', 'Luxa', 24), (52, 'Rope', 'Knotwell', 7.5), "
      "(53, 'Kettle', 'Boilo', 31), (54, 'Soap', 'Suds', 3.25), (55, 'Map', 'Terra', 12);";
  for (int customer = 31; customer < 31 + 2 * kThreads; ++customer) {
    sql += "INSERT INTO Customers VALUES (" + std::to_string(customer) + ", 'Ines', 'Varga');";
  }
  SqlRows(file, sql);
  return file;
}

// What is written to `fd` until every writer has closed it.
std::string ReadToEnd(int fd) {
  std::string text;
  char buffer[4096];
  for (ssize_t got; (got = read(fd, buffer, sizeof buffer)) > 0;) text.append(buffer, got);
  close(fd);
  return text;
}

std::uint32_t FromEnvironment(const char* name, std::uint32_t fallback) {
  const char* value = std::getenv(name);
  return value ? static_cast<std::uint32_t>(std::stoul(value)) : fallback;
}

TEST(CrashTest, SalesKilledAtRandomMomentsLoseNoAcknowledgedWriteAndHalfChangeNoOrder) {
  const std::uint32_t seed = FromEnvironment("BRINDLEWAY_CRASH_SEED", 20260611);
  const int kills = static_cast<int>(FromEnvironment("BRINDLEWAY_CRASH_KILLS", 60));
  std::mt19937 random(seed);
  TempDir dir;
  const auto file = MakeSalesStore(dir);
  ASSERT_FALSE(HasFailure());
  Model model;
  int underWay = 0, landed = 0;
  for (int round = 1; round <= kills; ++round) {
    SCOPED_TRACE("kill " + std::to_string(round) + ", seed " + std::to_string(seed) +
                 " (BRINDLEWAY_CRASH_SEED)");
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const std::uint32_t childSeed = random();
    const pid_t child = fork();
    if (child == 0) {  // sells on a thread of its own, so with an engine of its own
      platform::App::SetPath(dir.path().string());
      std::thread(Sell, childSeed, 31, 0, [&](const std::string& line) {
        const std::string text = line + "\n";  // under PIPE_BUF: written whole or not at all
        if (write(ends[1], text.data(), text.size()) != ssize_t(text.size())) _exit(3);
      }).join();
      _exit(1);
    }
    close(ends[1]);
    // The moment of the kill counts from the child's first line, "ready", so that it falls
    // among the sales; meanwhile the parent sleeps rather than reads, so as not to kill mostly
    // just after the child has written a line.
    char ready[6] = {};
    const bool started = read(ends[0], ready, sizeof ready) == sizeof ready;
    if (started) std::this_thread::sleep_for(std::chrono::milliseconds(5 + random() % 146));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    const std::string said = ReadToEnd(ends[0]);
    ASSERT_TRUE(started) << "the child never became ready: " << said;
    const std::optional<Call> pending = model.Replay(said);
    ASSERT_FALSE(HasFailure());
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "child status " << status;
    underWay += pending.has_value();

    ASSERT_EQ(SqlScalar(file, "PRAGMA integrity_check"), "ok");
    ASSERT_EQ(SqlScalar(file, "PRAGMA foreign_key_check"), "no row");
    // The acknowledged writes, or those and the call under way stored whole; a new order under
    // way would have the highest key.
    const auto stored = OrdersAndBasket(file);
    if (stored == model.Rows()) continue;
    ASSERT_TRUE(pending) << "the acknowledged writes are not stored:"
                         << Difference(model.Rows(), stored);
    Model whole = model;
    whole.Apply(*pending, std::stol(SqlScalar(file, "SELECT ifnull(max(OrderId), 0) FROM Orders")));
    ASSERT_TRUE(whole.Rows() == stored)
        << "neither the acknowledged writes nor those and the call under way, "
        << ::testing::PrintToString(*pending)
        << ", are stored:" << Difference(whole.Rows(), stored);
    model = whole;
    ++landed;
  }
  std::cout << kills << " kills, " << model.acknowledged << " acknowledged writes, " << underWay
            << " kills with a call under way (" << landed << " of those calls found stored whole), "
            << model.orders.size() << " orders and " << model.basket.size() << " basket rows"
            << std::endl;
}

// kThreads sellers at once, for the customers from `first` on: what they said, seller after
// seller.
std::string SellOnThreads(Long first) {
  std::vector<std::string> said(kThreads);
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back(Sell, first + i, first + i, 12,
                           [&, i](const std::string& line) { said[i] += line + "\n"; });
    }
  }
  std::string all;
  for (const std::string& text : said) all += text;
  return all;
}

// Threads here and in a second process, as several web servers would run them, each selling
// to a customer of its own: the store holds what every seller was told, no more.
TEST(ThreadTest, SellersOnThreadsOfTwoProcessesLoseAndMixUpNothing) {
  TempDir dir;
  const auto file = MakeSalesStore(dir);
  platform::App::SetPath(dir.path().string());
  int report[2];
  ASSERT_EQ(pipe(report), 0);
  const pid_t child = fork();
  if (child == 0) {
    const std::string said = SellOnThreads(31 + kThreads);
    _exit(write(report[1], said.data(), said.size()) == ssize_t(said.size()) ? 0 : 1);
  }
  close(report[1]);
  std::string said = SellOnThreads(31);
  platform::App::SetPath("");
  said += ReadToEnd(report[0]);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the second process: " << status;
  Model model;
  EXPECT_FALSE(model.Replay(said)) << "a call was left under way";
  const auto stored = OrdersAndBasket(file);
  EXPECT_TRUE(stored == model.Rows()) << Difference(model.Rows(), stored);
}

TEST(ThreadTest, ACallFromAnotherThreadIsRefusedAndTheObjectLivesOn) {
  TempDir dir;
  MakeStore(dir);
  platform::App::SetPath(dir.path().string());
  brindleway shop;
  auto late = server::BrindlewayClassFactory().CreateInstance();
  platform::App::SetPath("");
  const String wrongThread =
      "The application called an interface that was marshalled for a different thread.";
  std::thread([&] {
    String msg;
    Long order = 1, customer = 1;
    auto names = std::make_shared<Collection>();
    EXPECT_EQ(shop.BasketList(msg, names, order), -1);
    EXPECT_EQ(msg, "<CompError: brindleway.BasketList> " + wrongThread);
    try {
      shop.StartNewOrder(msg, order, customer);
      ADD_FAILURE() << "StartNewOrder from another thread was not refused";
    } catch (const platform::Error& failure) {
      EXPECT_EQ(failure.Number(), platform::errWrongThread);
    }
    std::vector<server::Argument> arguments{{"", Variant()}, {"", Variant(Long{1})}};
    try {
      late->Invoke("DeleteAnOrder", arguments);
      ADD_FAILURE() << "a late-bound call from another thread was not refused";
    } catch (const platform::Error& failure) {
      EXPECT_EQ(failure.Description(), wrongThread);
    }
  }).join();
  String msg;
  Long order = 1;
  auto names = std::make_shared<Collection>();
  EXPECT_EQ(shop.BasketList(msg, names, order), 3) << msg;
}

}  // namespace
}  // namespace brindlewayProj::testing
