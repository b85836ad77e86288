// Two processes adding orders at the same time, each through AddNew and Update inside its own
// transactions: every order is stored once, under the key that AddNew showed.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <set>

#include <brindleway/dao.h>
#include "tests/support/test_support.h"

namespace brindlewayProj::dao {
namespace {

constexpr int kOrdersPerProcess = 200;

// Adds the orders and writes each key AddNew showed to `output`; the exit status of a child.
int AddOrders(const std::filesystem::path& file, int output) {
  try {
    auto& workspace = *DBEngine().Workspaces(0);
    auto db = workspace.OpenDatabase(file.string());
    for (int i = 0; i < kOrdersPerProcess; ++i) {
      workspace.BeginTrans();
      auto orders = db->OpenRecordset("Orders", dbOpenDynaset);
      orders->AddNew();
      orders->Collect("Delivery", Variant(Integer{0}));
      Long key = CLng(orders->Fields()->Item("OrderId")->Value());
      orders->Update();
      workspace.CommitTrans();
      if (write(output, &key, sizeof key) != sizeof key) return 3;
    }
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "child failed: %s\n", failure.what());
    return 2;
  }
}

TEST(Concurrency, TwoProcessesAddingOrdersGetTheKeysTheyWereShown) {
  testing::TempDir dir;
  auto file = testing::MakeStore(dir, false);
  std::multiset<Long> shown;
  std::vector<std::pair<pid_t, int>> children;
  for (int child = 0; child < 2; ++child) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t pid = fork();
    if (pid == 0) _exit(AddOrders(file, ends[1]));
    close(ends[1]);
    children.push_back({pid, ends[0]});
  }
  for (auto [pid, output] : children) {
    for (Long key = 0; read(output, &key, sizeof key) == sizeof key;) shown.insert(key);
    close(output);
    int status = 0;
    waitpid(pid, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
  }
  std::multiset<Long> stored;
  for (const auto& row : testing::SqlRows(file, "SELECT OrderId FROM Orders"))
    stored.insert(std::stoi(row[0]));
  EXPECT_EQ(shown.size(), 2u * kOrdersPerProcess);
  EXPECT_EQ(std::set<Long>(shown.begin(), shown.end()).size(), shown.size());
  EXPECT_EQ(shown, stored);
}

}  // namespace
}  // namespace brindlewayProj::dao
