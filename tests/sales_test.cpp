// Sellers killed at random moments, and sellers on threads of two processes at once, checked row
// by row: a seller writes "try <call>" before each call and "ok <new key>" after each one that
// answered as it must, from which a model knows every row the store must hold.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <numeric>
#include <optional>
#include <random>
#include <sstream>
#include <thread>

#include <brindleway/dispatch.h>
#include "server/class_factory.h"
#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

constexpr int kThreads = 4;  // sellers in each of the two processes
using Say = std::function<void(const std::string& line)>;

// "start 31 2026-03-05 Sale-4", "buy 17 52 3", "modify 17 52 8", "count 17 52" (QuantityOrdered),
// "remove 17 52", "ship 17 2026-04-01" (Delivery 1), "delete 17".
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

// `sales` sales (for ever when 0) of `customer`. Every call finds its rows, so another answer
// ends them with "fail ..."; one refused by a lock conflict stored nothing and is made again.
void Sell(Long customer, int sales, const Say& say) {
  brindleway shop;
  say("ready");
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
      char date[16];
      std::snprintf(date, sizeof date, " 2026-%02d-%02d", 1 + sale % 12, 1 + sale % 28);
      const std::string order = run("start " + std::to_string(customer) + date + " Sale", 0);
      const std::string one = " " + std::to_string(51 + sale % 5);
      const std::string other = " " + std::to_string(51 + (sale + 2) % 5);
      run("buy" + order + one + " 2", 0);
      run("buy" + order + other + " 3", 0);
      run("count" + order + one, 1);
      if (sale % 2) run("modify" + order + one + " 7", 1);
      if (sale % 3 == 0) run("remove" + order + other, 1);
      if (sale % 4 < 2) run("ship" + order + date, 1);
      if (sale % 5 == 0) run("delete" + order, 1);
    }
  } catch (const std::exception& failure) {
    say(std::string("fail ") + failure.what());
  }
}

// What the store must hold, row by row as OrdersAndBasket reads them: orders under (0, order),
// basket rows under (order, product).
struct Model {
  std::map<std::pair<Long, Long>, SqlRow> rows;

  void Apply(const Call& call, Long key) {
    const Long order = call[0] == "start" ? key : std::stol(call[1]);
    if (call[0] == "start") {
      EXPECT_FALSE(rows.contains({0, key})) << "the key " << key << " was given twice";
      rows[{0, key}] = {std::to_string(key), call[1], call[2] + " 00:00:00", "NULL", "0", call[3]};
    } else if (call[0] == "buy" || call[0] == "modify") {
      rows[{order, std::stol(call[2])}] = {call[1], call[2], call[3]};
    } else if (call[0] == "remove") {
      rows.erase({order, std::stol(call[2])});
    } else if (call[0] == "ship") {
      rows.at({0, order})[3] = call[2] + " 00:00:00";
      rows.at({0, order})[4] = "1";
    } else if (call[0] == "delete") {
      std::erase_if(rows, [&](const auto& row) {
        return row.first.first == order || row.first == std::pair<Long, Long>(0, order);
      });
    }
  }
  // Applies the calls acknowledged in `said`; answers the one under way, if any.
  std::optional<Call> Replay(const std::string& said) {
    std::istringstream lines(said);
    std::optional<Call> pending;
    for (std::string line; std::getline(lines, line);) {
      EXPECT_FALSE(line.starts_with("fail")) << line;
      if (line.starts_with("try ")) pending = Split(line.substr(4));
      if (!line.starts_with("ok ") || !pending) continue;
      Apply(*pending, std::stol(line.substr(3)));
      pending.reset();
    }
    return pending;
  }
  std::vector<SqlRow> Rows() const {
    std::vector<SqlRow> all;
    for (const auto& [key, row] : rows) all.push_back(row);
    return all;
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

// A store with five products and a customer for each seller, 31 to 38.
std::filesystem::path MakeSalesStore(const TempDir& dir) {
  auto file = MakeStore(dir, false);
  SqlRows(file,
          "INSERT INTO Products VALUES (51, 'Lamp', 'Luxa', 24), (52, 'Rope', 'Knotwell', 7.5), "
          "(53, 'Kettle', 'Boilo', 31), (54, 'Soap', 'Suds', 3.25), (55, 'Map', 'Terra', 12);"
          "INSERT INTO Customers VALUES (31, 'Ines', 'Varga'), (32, 'Tomo', 'Reyes'), "
          "(33, 'Ola', 'Brandt'), (34, 'Ned', 'Kahl'), (35, 'Ida', 'Moen'), (36, 'Uri', 'Sato'), "
          "(37, 'Eve', 'Lund'), (38, 'Abe', 'Ruiz');");
  return file;
}

// After each kill the store is sound and holds every acknowledged write, and the call under way
// whole or not at all. A kill ends the process, not the machine: this proves the commits, not
// the disk's flushes. BRINDLEWAY_CRASH_SEED and BRINDLEWAY_CRASH_KILLS override the run.
TEST(CrashTest, SalesKilledAtRandomMomentsLoseNoAcknowledgedWriteAndHalfChangeNoOrder) {
  const char* seedText = std::getenv("BRINDLEWAY_CRASH_SEED");
  const char* killsText = std::getenv("BRINDLEWAY_CRASH_KILLS");
  const std::uint32_t seed = seedText ? std::stoul(seedText) : 20260611;
  const int kills = killsText ? std::stoi(killsText) : 60;
  std::mt19937 random(seed);
  TempDir dir;
  const auto file = MakeSalesStore(dir);
  ASSERT_FALSE(HasFailure());
  Model model;
  int landed = 0;  // calls under way found stored whole
  for (int round = 1; round <= kills; ++round) {
    SCOPED_TRACE("kill " + std::to_string(round) + ", seed " + std::to_string(seed) +
                 " (BRINDLEWAY_CRASH_SEED)");
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {  // sells on a thread of its own, so with an engine of its own
      platform::App::SetPath(dir.path().string());
      std::thread(Sell, 31, 0, [&](const std::string& line) {
        const std::string text = line + "\n";  // under PIPE_BUF: written whole or not at all
        if (write(ends[1], text.data(), text.size()) != ssize_t(text.size())) _exit(3);
      }).join();
      _exit(1);
    }
    close(ends[1]);
    // The kill falls among the sales: its moment counts from "ready", slept rather than read
    // through, so as not to kill mostly just after a line.
    char ready[6] = {};
    const bool started = read(ends[0], ready, sizeof ready) == sizeof ready;
    if (started) std::this_thread::sleep_for(std::chrono::milliseconds(5 + random() % 146));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    const std::string said = ReadFile("/dev/fd/" + std::to_string(ends[0]));  // to the end
    close(ends[0]);
    ASSERT_TRUE(started) << "the child never became ready: " << said;
    const std::optional<Call> pending = model.Replay(said);
    ASSERT_FALSE(HasFailure());
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "child status " << status;

    ASSERT_EQ(SqlScalar(file, "PRAGMA integrity_check"), "ok");
    ASSERT_EQ(SqlScalar(file, "PRAGMA foreign_key_check"), "no row");
    // Else the call under way landed whole; a new order would have the highest key.
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
  EXPECT_TRUE(landed > 0 || kills < 20) << "no kill fell between a commit and its answer";
}

// What kThreads sellers at once, for the customers from `first` on, said.
std::string SellOnThreads(Long first) {
  std::vector<std::string> said(kThreads);
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back(Sell, first + i, 12,
                           [&, i](const std::string& line) { said[i] += line + "\n"; });
    }
  }
  return std::accumulate(said.begin(), said.end(), std::string());
}

// Threads here and in a second process, as web servers would run them, each with a customer.
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
  said += ReadFile("/dev/fd/" + std::to_string(report[0]));
  close(report[0]);
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
  const std::pair<Long, String> wrongThread(
      platform::errWrongThread,
      "The application called an interface that was marshalled for a different thread.");
  String msg;
  Long order = 1, customer = 1;
  auto names = std::make_shared<Collection>();
  std::vector<server::Argument> arguments{{"", Variant()}, {"", Variant(Long{1})}};
  std::thread([&] {
    EXPECT_EQ(shop.BasketList(msg, names, order), -1);
    EXPECT_EQ(msg, "<CompError: brindleway.BasketList> " + wrongThread.second);
    EXPECT_EQ(ErrorOf([&] { shop.StartNewOrder(msg, order, customer); }), wrongThread);
    EXPECT_EQ(ErrorOf([&] { late->Invoke("DeleteAnOrder", arguments); }), wrongThread);
  }).join();
  EXPECT_EQ(shop.BasketList(msg, names, order), 3) << msg;
}

}  // namespace
}  // namespace brindlewayProj::testing
