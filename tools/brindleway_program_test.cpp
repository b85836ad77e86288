// The brindleway program as a script runs it: output, messages and exit codes.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <fstream>
#include <regex>
#include <sstream>

#include "server/server_exports.h"
#include "tests/support/test_support.h"
#include "tools/commands.h"

namespace brindlewayProj::cli {
namespace {

using testing::TempDir;

struct ProgramRun {
  int exitCode;
  String out;
  String err;
};

// Runs the program with its own registry file in a fresh folder; a sample store lies there.
class ProgramTest : public ::testing::Test {
 protected:
  ProgramTest() : store_(testing::MakeStore(dir_)) {}

  ProgramRun Brindleway(const std::vector<String>& words) const {
    String command =
        "BRINDLEWAY_REGISTRY='" + (dir_ / "registry").string() + "' " + BRINDLEWAY_PROGRAM;
    for (const String& word : words) command += " '" + word + "'";
    command += " >'" + (dir_ / "out").string() + "' 2>'" + (dir_ / "err").string() + "'";
    int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Read("out"), Read("err")};
  }

  String Read(const String& name) const {
    std::ostringstream text;
    text << std::ifstream(dir_ / name).rdbuf();
    return text.str();
  }

  // The words of a call on the sample store.
  std::vector<String> On(std::vector<String> words) const {
    words.insert(words.begin(), {"call", "--store", store_.string()});
    return words;
  }

  TempDir dir_;
  std::filesystem::path store_;
};

TEST_F(ProgramTest, ASaleFromTheShell) {
  ASSERT_EQ(Brindleway({"register"}).exitCode, kExitOk);
  ProgramRun started = Brindleway(
      On({"StartNewOrder", "ilngCustomerId=1", "iintDelivery=0", "istrDescription= Gift wrap "}));
  ASSERT_EQ(started.exitCode, kExitOk) << started.err;
  EXPECT_NE(
      started.out.find("status: 0\nReturnMsg: <CompInfo: brindleway.StartNewOrder> Success\n"),
      String::npos)
      << started.out;
  std::smatch order;
  ASSERT_TRUE(std::regex_search(started.out, order, std::regex("olngOrderId: (\\d+)")));
  ASSERT_EQ(Brindleway(On({"ProductToBuy", "ilngOrderId=" + order[1].str(), "ilngProductId=2",
                           "ilngQuantity=2"}))
                .exitCode,
            kExitOk);
  ProgramRun found = Brindleway(On({"basketlist", "orderid=" + order[1].str()}));
  EXPECT_NE(found.out.find("ostrProductNameCol: 1 entries\n  1: \"Basalt Mortar\""), String::npos)
      << found.out;
}

TEST_F(ProgramTest, UsageErrorsAndUnusableFilesHaveTheirExitCodes) {
  ASSERT_EQ(Brindleway({"register"}).exitCode, kExitOk);
  const std::tuple<std::vector<String>, int, const char*> cases[] = {
      {On({"StartOrder"}), kExitUsage, "no method 'StartOrder'"},
      {On({"BasketList", "Order=1"}), kExitUsage, "BasketList has no parameter 'Order'"},
      {On({"BasketList", "OrderId=abc"}), kExitUsage, "Type mismatch"},
      {On({"BasketList"}), kExitUsage, "needs OrderId"},
      {{"frobnicate"}, kExitUsage, "unknown command"},
      {{"create", "--sample", store_.string()}, kExitEnvironment, "already exists"},
      {{"call", "--store", (dir_ / "none.mdb").string(), "DbDisconnect"},
       kExitEnvironment,
       "none.mdb"},
      {On({"DeleteAnOrder", "OrderId=999999"}), kExitOk, ""},
      {On({"-v", "ProductToBuy", "ilngOrderId=1", "ilngProductId=999", "ilngQuantity=1"}),
       kExitCallFailed, "failed query: OrderBasket\nengine code: 787\n"
                        "engine message: FOREIGN KEY constraint failed"},
  };
  for (const auto& [words, exitCode, inMessage] : cases) {
    ProgramRun run = Brindleway(words);
    EXPECT_EQ(run.exitCode, exitCode) << words.back() << ": " << run.err;
    EXPECT_NE(run.err.find(inMessage), String::npos) << run.err;
  }
  ASSERT_EQ(Brindleway({"unregister"}).exitCode, kExitOk);
  ProgramRun unregistered = Brindleway(On({"DbDisconnect"}));
  EXPECT_EQ(unregistered.exitCode, kExitEnvironment);
  EXPECT_NE(unregistered.err.find("not registered"), String::npos) << unregistered.err;
}

TEST_F(ProgramTest, DemoWalksASaleOnAStoreItCreates) {
  ASSERT_EQ(Brindleway({"register"}).exitCode, kExitOk);
  const auto fresh = dir_ / "demo.mdb";
  ProgramRun demo = Brindleway({"demo", "--store", fresh.string()});
  ASSERT_EQ(demo.exitCode, kExitOk) << demo.out << demo.err;
  EXPECT_TRUE(std::filesystem::exists(fresh));
  for (const char* message :
       {"<CompInfo: brindleway.StartNewOrder> Success", "<CompInfo: brindleway.BuyAnOrder> Success",
        "<CompInfo: brindleway.OrderDetail> Found 1 records"}) {
    EXPECT_NE(demo.out.find(message), String::npos) << message;
  }
}

// A client that knows only the file reads its version block by name; the program says the same.
TEST_F(ProgramTest, VersionBlockOfTheServerFileAndTheProgramAgree) {
  void* library = dlopen(BRINDLEWAY_SERVER_FILE, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  const auto versionInfo =
      reinterpret_cast<server::DllGetVersionInfoFn>(dlsym(library, "DllGetVersionInfo"));
  ASSERT_NE(versionInfo, nullptr) << dlerror();
  const server::VersionInfo& info = *versionInfo();
  EXPECT_EQ(info.size, sizeof(server::VersionInfo));
  for (const std::uint16_t* version : {info.fileVersion, info.productVersion}) {
    EXPECT_EQ(std::vector<int>(version, version + 4), (std::vector<int>{1, 0, 0, 0}));
  }
  EXPECT_STREQ(info.fileVersionText, "1.00");
  EXPECT_STREQ(info.productVersionText, "1.00");
  EXPECT_STREQ(info.productName, "brindlewayProj");
  EXPECT_STREQ(info.internalName, "brindlewayProj");
  EXPECT_STREQ(info.fileName, "brindlewayProj.so");
  // brindlewayProj.so is the link to the versioned file.
  EXPECT_EQ(std::filesystem::canonical(BRINDLEWAY_SERVER_FILE).filename(),
            "brindlewayProj.so.1.0.0.0");
  dlclose(library);

  const ProgramRun version = Brindleway({"--version"});
  EXPECT_EQ(version.exitCode, kExitOk);
  EXPECT_EQ(version.out, "brindleway 1.00 (brindlewayProj 1.0.0.0)\n");
}

}  // namespace
}  // namespace brindlewayProj::cli
