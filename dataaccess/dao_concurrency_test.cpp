// Two processes adding orders at the same time, each through AddNew and Update inside its own
// transactions: every order is stored once, under the key that AddNew showed.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <iostream>
#include <set>

#include <brindleway/dao.h>
#include "tests/support/test_support.h"

namespace brindlewayProj::dao {
namespace {

constexpr int kOrdersPerProcess = 500;

// Adds the orders and writes each key AddNew showed to `output`; the exit status of the child.
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
    std::cerr << "child failed: " << failure.what() << "\n";
    return 2;
  }
}

TEST(Concurrency, TwoProcessesAddingOrdersGetTheKeysTheyWereShown) {
  testing::TempDir dir;
  auto file = testing::MakeStore(dir, false);
  std::vector<pid_t> children;
  std::vector<int> outputs;
  for (int child = 0; child < 2; ++child) {
    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
      close(pipeEnds[0]);
      _exit(AddOrders(file, pipeEnds[1]));
    }
    close(pipeEnds[1]);
    children.push_back(pid);
    outputs.push_back(pipeEnds[0]);
  }
  std::multiset<Long> shown;
  for (int output : outputs) {
    Long key = 0;
    while (read(output, &key, sizeof key) == sizeof key) shown.insert(key);
    close(output);
  }
  for (pid_t pid : children) {
    int status = 0;
    waitpid(pid, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
  }

  auto orders =
      DBEngine()
          .Workspaces(0)
          ->OpenDatabase(file.string())
          ->OpenRecordset("Select [OrderId] From [Orders] Order By [OrderId]", dbOpenSnapshot);
  std::multiset<Long> stored;
  for (; !orders->Eof(); orders->MoveNext()) {
    stored.insert(CLng(orders->Fields()->Item("OrderId")->Value()));
  }
  EXPECT_EQ(stored.size(), 2u * kOrdersPerProcess);
  EXPECT_EQ(std::set<Long>(stored.begin(), stored.end()).size(), stored.size());
  EXPECT_EQ(shown, stored);
}

}  // namespace
}  // namespace brindlewayProj::dao
