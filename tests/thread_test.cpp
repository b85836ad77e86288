// Threads and processes: every thread has its own engine, so objects on different threads share
// nothing but the store. Eight threads, or four processes, selling at once lose and duplicate
// no order; an object called from another thread than its own refuses the call and stays
// usable on its own.
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <set>
#include <thread>

#include <brindleway/dispatch.h>

#include "server/class_factory.h"
#include "tests/support/shop_fixture.h"

namespace brindlewayProj::testing {
namespace {

constexpr int kThreads = 8;
constexpr int kSalesPerThread = 12;
const String kLocked = "Could not update; currently locked.";

// What one thread saw: the orders it was told were stored, and every answer it did not expect.
struct Seller {
  std::vector<Long> orders;
  std::vector<String> surprises;
  int lockConflicts = 0;
};

// Sales of one customer through an object of the thread's own, each checked by the readers.
void Sell(Long customer, Seller& seller) {
  brindleway shop;
  String msg;
  auto expect = [&](bool ok, const String& what) {
    if (!ok) seller.surprises.push_back(what + ": " + msg);
  };
  // A write refused by a lock conflict is a valid answer under contention; any other -1 is not.
  auto wrote = [&](Integer status, const String& what) {
    if (status < 0 && msg.ends_with(kLocked)) ++seller.lockConflicts;
    expect(status >= 0 || msg.ends_with(kLocked), what);
    return status >= 0;
  };
  for (int sale = 0; sale < kSalesPerThread; ++sale) {
    Long order = 0, tea = 7, mug = 8, two = 2, buyer = customer;
    Variant date = DateSerial(2026, 11, 1 + sale), none, open = Integer(0);
    if (!wrote(shop.StartNewOrder(msg, order, buyer, date, none, open), "StartNewOrder")) continue;
    seller.orders.push_back(order);
    wrote(shop.ProductToBuy(msg, order, tea, two), "ProductToBuy");
    wrote(shop.ProductToBuy(msg, order, mug, two), "ProductToBuy");
    auto names = std::make_shared<Collection>();
    Integer found = shop.BasketList(msg, names, order);
    expect(found >= 0 && found <= 2, "BasketList");
    Long quantity = 0;
    Integer rows = shop.QuantityOrdered(msg, quantity, order, tea);
    expect(rows == 0 || (rows == 1 && quantity == 2), "QuantityOrdered");
    if (sale % 3 == 2) {
      Date delivered = DateSerial(2026, 12, 1);
      Integer shipped = 1;
      wrote(shop.BuyAnOrder(msg, order, delivered, shipped), "BuyAnOrder");
    }
    if (sale % 4 == 3 && wrote(shop.DeleteAnOrder(msg, order), "DeleteAnOrder")) {
      seller.orders.pop_back();
    }
  }
  auto lines = std::make_shared<Collection>();
  String separator;
  Long buyer = customer;
  Integer listed = shop.ListOfOrders(msg, lines, separator, buyer);
  expect(listed == static_cast<Integer>(seller.orders.size()), "ListOfOrders");
}

// A store with the two products and customers 101 to 100 + `sellers`, which the component in
// `dir` opens.
std::filesystem::path MakeSalesStore(const TempDir& dir, int sellers) {
  auto store = MakeStore(dir, false);
  std::string customers = "INSERT INTO Products VALUES (7, 'Tea', 'Leafco', 4.5), (8, 'Mug', 'Clay', 9);";
  for (int i = 1; i <= sellers; ++i) {
    customers += "INSERT INTO Customers VALUES (" + std::to_string(100 + i) + ", 'C', 'D');";
  }
  SqlRows(store, customers);
  return store;
}

// Every acknowledged order is stored once, under its customer; no other order is; no seller
// met an answer it did not expect.
void ExpectEveryAcknowledgedOrderStoredOnce(const std::filesystem::path& store,
                                            const std::vector<Seller>& sellers) {
  std::set<Long> acknowledged;
  int conflicts = 0;
  for (std::size_t i = 0; i < sellers.size(); ++i) {
    for (const auto& surprise : sellers[i].surprises) ADD_FAILURE() << "thread " << i << ": " << surprise;
    for (Long order : sellers[i].orders) EXPECT_TRUE(acknowledged.insert(order).second) << order;
    conflicts += sellers[i].lockConflicts;
  }
  std::set<Long> found;
  for (const auto& row : SqlRows(store, "SELECT OrderId FROM Orders")) {
    found.insert(std::stol(row[0]));
  }
  EXPECT_EQ(found, acknowledged);
  ::testing::Test::RecordProperty("lock_conflicts", conflicts);
}

TEST(ThreadTest, EightThreadsSellingAtOnceLoseAndDuplicateNoOrder) {
  TempDir dir;
  auto store = MakeSalesStore(dir, kThreads);
  platform::App::SetPath(dir.path().string());
  std::vector<Seller> sellers(kThreads);
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < kThreads; ++i) threads.emplace_back(Sell, 101 + i, std::ref(sellers[i]));
  }
  platform::App::SetPath("");
  ExpectEveryAcknowledgedOrderStoredOnce(store, sellers);
}

// The same sales from processes of their own, as several web servers would run them: each
// sends back, line by line, its orders ("o <id>"), lock conflicts ("c") and surprises.
TEST(ThreadTest, FourProcessesSellingAtOnceLoseAndDuplicateNoOrder) {
  constexpr int kProcesses = 4;
  TempDir dir;
  auto store = MakeSalesStore(dir, kProcesses);
  platform::App::SetPath(dir.path().string());
  std::vector<std::pair<pid_t, FILE*>> children;
  for (int i = 0; i < kProcesses; ++i) {
    int report[2];
    ASSERT_EQ(pipe(report), 0);
    const pid_t child = fork();
    if (child == 0) {
      close(report[0]);
      Seller seller;
      Sell(101 + i, seller);
      std::string lines;
      for (Long order : seller.orders) lines += "o " + std::to_string(order) + "\n";
      lines += std::string(static_cast<std::size_t>(seller.lockConflicts), 'c');
      for (const auto& surprise : seller.surprises) lines += "\n" + surprise;
      (void)!write(report[1], lines.data(), lines.size());
      _exit(0);
    }
    close(report[1]);
    children.emplace_back(child, fdopen(report[0], "r"));
  }
  platform::App::SetPath("");
  std::vector<Seller> sellers(kProcesses);
  for (int i = 0; i < kProcesses; ++i) {
    char line[512];
    while (std::fgets(line, sizeof line, children[i].second)) {
      std::string text(line);
      if (text.ends_with('\n')) text.pop_back();
      if (text.starts_with("o ")) {
        sellers[i].orders.push_back(std::stol(text.substr(2)));
      } else if (!text.empty() && text.find_first_not_of('c') == std::string::npos) {
        sellers[i].lockConflicts += static_cast<int>(text.size());
      } else if (!text.empty()) {
        sellers[i].surprises.push_back(text);
      }
    }
    std::fclose(children[i].second);
    int status = 0;
    waitpid(children[i].first, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "process " << i;
  }
  ExpectEveryAcknowledgedOrderStoredOnce(store, sellers);
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
