// brindleway serve as a shell starts it: the address it tells, an answer, a clean stop on
// SIGTERM, a store it cannot open, and the options it refuses.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <regex>

#include <gtest/gtest.h>
#include <httplib.h>

#include "tests/support/test_support.h"
#include "tools/commands.h"

namespace brindlewayProj::cli {
namespace {

// The program serving on a free loopback port, its standard output read through a pipe.
class Serving {
 public:
  explicit Serving(const String& store) {
    int out[2];
    if (pipe(out) != 0) throw std::runtime_error("no pipe");
    pid_ = fork();
    if (pid_ == 0) {
      dup2(out[1], STDOUT_FILENO);
      close(out[0]);
      execl(BRINDLEWAY_PROGRAM, BRINDLEWAY_PROGRAM, "serve", "--store", store.c_str(), "--listen",
            "127.0.0.1:0", "--threads", "2", nullptr);
      _exit(127);
    }
    close(out[1]);
    output_ = fdopen(out[0], "r");
    char line[512] = "";
    if (std::fgets(line, sizeof line, output_)) firstLine_ = line;
  }
  ~Serving() {
    if (pid_ > 0) Stop();
    std::fclose(output_);
  }
  // SIGTERM, then the exit code.
  int Stop() {
    kill(pid_, SIGTERM);
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  const String& firstLine() const { return firstLine_; }
  int Port() const {
    std::smatch match;
    return std::regex_search(firstLine_, match, std::regex("http://127\\.0\\.0\\.1:([0-9]+)/"))
               ? std::stoi(match[1])
               : -1;
  }

 private:
  pid_t pid_ = -1;
  std::FILE* output_ = nullptr;
  String firstLine_;
};

TEST(ServeCommandTest, ServesUntilSigtermAndTellsWhereItListens) {
  testing::TempDir dir;
  Serving serving(testing::MakeStore(dir).string());
  ASSERT_GT(serving.Port(), 0) << serving.firstLine();
  httplib::Client client("127.0.0.1", serving.Port());
  httplib::Result customers = client.Get("/api/customers");
  ASSERT_TRUE(customers);
  EXPECT_EQ(customers->status, 200);
  EXPECT_NE(customers->body.find("Castellane"), String::npos);
  EXPECT_EQ(serving.Stop(), kExitOk);
}

TEST(ServeCommandTest, AStoreThatCannotBeOpenedAnswers503) {
  Serving serving("/nonexistent/folder/shop.mdb");
  httplib::Client client("127.0.0.1", serving.Port());
  httplib::Result products = client.Get("/api/products");
  ASSERT_TRUE(products) << serving.firstLine();
  EXPECT_EQ(products->status, 503);
  EXPECT_NE(products->body.find("\"kind\":\"store\""), String::npos) << products->body;
  EXPECT_NE(products->body.find("DbConnect"), String::npos) << products->body;
}

TEST(ServeCommandTest, RefusesBadOptions) {
  for (const char* options : {"--listen 127.0.0.1", "--listen 127.0.0.1:70000",
                              "--listen :8080", "--threads 0", "--threads many"}) {
    const String command = String(BRINDLEWAY_PROGRAM) + " serve " + options + " 2>/dev/null";
    const int status = std::system(command.c_str());
    EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, kExitUsage) << options;
  }
}

}  // namespace
}  // namespace brindlewayProj::cli
