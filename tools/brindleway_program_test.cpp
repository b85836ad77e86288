// The brindleway program as a script or a shell runs it: output, messages and exit codes.
#include <signal.h>
#include <sys/wait.h>

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

#include "server/type_library.h"
#include "tests/support/test_support.h"
#include "tools/commands.h"

namespace brindlewayProj::cli {
namespace {

using nlohmann::json;

struct ProgramRun {
  int exitCode;
  String out, err;
};

// Every line of `text` as JSON.
std::vector<json> JsonLines(const String& text) {
  std::vector<json> lines;
  std::istringstream in(text);
  for (String line; std::getline(in, line);) lines.push_back(json::parse(line));
  return lines;
}

// Runs the program with its own registry file, where it is registered, in a fresh folder
// where a sample store lies.
class ProgramTest : public ::testing::Test {
 protected:
  ProgramTest() : store_(testing::MakeStore(dir_).string()) {
    EXPECT_EQ(Brindleway({"register"}).exitCode, kExitOk);
  }

  // Runs the program in the folder with `words` (none with a single quote), `input` on its
  // standard input.
  ProgramRun Brindleway(const std::vector<String>& words, const String& input = "") const {
    std::ofstream(dir_ / "in") << input;
    String command = "cd '" + dir_.path().string() + "' && BRINDLEWAY_REGISTRY=$PWD/registry " +
                     BRINDLEWAY_PROGRAM;
    for (const String& word : words) command += " '" + word + "'";
    const int status = std::system((command + " <in >out 2>err").c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, testing::ReadFile(dir_ / "out"),
            testing::ReadFile(dir_ / "err")};
  }
  // The words of a call on the sample store.
  std::vector<String> On(std::vector<String> words) const {
    words.insert(words.begin(), {"call", "--store", store_});
    return words;
  }

  testing::TempDir dir_;
  String store_;
};

// Exit codes and messages, in order: the last calls find the server unregistered. Help on the
// methods comes from the type library.
TEST_F(ProgramTest, ExitCodesAndMessages) {
  const std::tuple<std::vector<String>, int, String> cases[] = {
      {On({"StartOrder"}), kExitUsage, "no method 'StartOrder'"},
      {On({"BasketList", "OrderId=abc"}), kExitUsage, "Type mismatch"},
      {On({"BasketList"}), kExitUsage, "needs OrderId"},
      {{"frobnicate"}, kExitUsage, "unknown command 'frobnicate'"},
      {On({"BasketList", "OrderId=1", "--frobnicate"}), kExitUsage, "--frobnicate"},
      {{"-q", "-v", "register"}, kExitUsage, "excludes"},
      {On({"-"}), kExitUsage, "--json -"},
      {On({"--json", "BasketList", "OrderId=x"}), kExitUsage, R"({"error":{"kind":"usage")"},
      {{"serve", "--listen", "127.0.0.1"}, kExitUsage, "is not HOST:PORT"},
      {{"serve", "--listen", "127.0.0.1:70000"}, kExitUsage, "is not HOST:PORT"},
      {{"serve", "--listen", ":8080"}, kExitUsage, "is not HOST:PORT"},
      {{"serve", "--threads", "0"}, kExitUsage, "--threads"},
      {{"create", "--sample", store_}, kExitEnvironment, "already exists"},
      {{"call", "--store=/none/shop.mdb", "DbDisconnect"}, kExitEnvironment, "/none/shop.mdb"},
      {On({"DeleteAnOrder", "OrderId=999999"}), kExitOk, ""},
      {On({"-v", "ProductToBuy", "ilngOrderId=1", "ilngProductId=999", "ilngQuantity=1"}),
       kExitCallFailed,
       "failed query: OrderBasket\nengine code: 787\n"
       "engine message: FOREIGN KEY constraint failed"},
      {{"--version"}, kExitOk, "brindleway 1.00 (brindlewayProj 1.0.0.0)\n"},
      {{"call", "--help"}, kExitOk, server::Signature(server::Methods().back())},
      {{"call", "basketlist", "--help"},
       kExitOk,
       server::Signature(*server::FindMethod("BasketList")) + "\n\ndispatch id 0x"},
      {{"unregister"}, kExitOk, ""},
      {On({"DbDisconnect"}), kExitEnvironment, "/registry; run 'brindleway register'"},
  };
  for (const auto& [words, exitCode, inMessage] : cases) {
    ProgramRun run = Brindleway(words);
    EXPECT_EQ(run.exitCode, exitCode) << words.back() << ": " << run.err;
    EXPECT_NE((run.err + run.out).find(inMessage), String::npos) << run.err << run.out;
  }
}

// The text report: a "Name: value" line each, texts quoted with JSON's escapes so that every
// value keeps to its line, a collection's entries on lines of their own, dates in ISO 8601.
// Options stand anywhere on the line, as --opt=value or --opt value; -q leaves only the exit
// code, -v tells where the object came from: the server file registered by its absolute path.
TEST_F(ProgramTest, ReportsOfACallAndOptionsAnywhereOnTheLine) {
  const ProgramRun started = Brindleway(
      On({"--json", "startneworder", "ilngcustomerid=2", "iintDelivery=0",
          "idtmOrderDate=2026-11-22 14:05", "istrDescription=Say \"hi\"\nthen\tgo \\ back"}));
  ASSERT_EQ(started.exitCode, kExitOk) << started.err;
  const String orderId = "OrderId=" + json::parse(started.out)["changed"]["olngOrderId"].dump();
  const ProgramRun text = Brindleway(On({"OrderDetail", orderId}));
  const String reports = text.out + Brindleway(On({"BasketList", "OrderId=1"})).out;
  for (const char* part : {"status: 1\nReturnMsg: <CompInfo: brindleway.OrderDetail> Found 1 ",
                           "odtmOrderDate: 2026-11-22T14:05:00\n",
                           R"(ostrDescription: "Say \"hi\"\nthen\tgo \\ back")",
                           "ostrProductNameCol: 3 entries\n  1: \"Alder Tea Tin\"\n"}) {
    EXPECT_NE(reports.find(part), String::npos) << part << " in:\n" << reports;
  }

  // The words, and whether they ask for quiet.
  const std::pair<std::vector<String>, bool> placements[] = {
      {{"call", "--store=" + store_, "OrderDetail", orderId}, false},
      {{"call", "OrderDetail", "--store", store_, orderId, "-v"}, false},
      {{"-q", "call", "OrderDetail", orderId, "--store=" + store_}, true},
      {{"call", "--store", store_, "OrderDetail", orderId, "--quiet"}, true},
  };
  const String where = "registry " + (dir_ / "registry").string() + ", server file " +
                       BRINDLEWAY_SERVER_FILE + ", store " + store_;
  for (const auto& [words, quiet] : placements) {
    const ProgramRun run = Brindleway(words);
    EXPECT_EQ(run.exitCode, kExitOk) << run.err;
    EXPECT_EQ(run.out, quiet ? "" : text.out) << words[1] << ' ' << words[2];
    EXPECT_EQ(run.err.find(where) != String::npos, words.back() == "-v") << run.err;
  }
}

// One process answers every line, in order, on one object: after DbDisconnect the same object
// has no store. Bad lines are answered and skipped; the exit code is the most serious one.
TEST_F(ProgramTest, BatchAnswersEveryLineOnOneObject) {
  const String input = R"({"id": 1, "method": "BasketList", "arguments": {"OrderId": 1}}

{"id": "two", "method": "BuildMultiCond", "arguments": {"sField": "V", "colCond": ["A", "B"]}}
{oops
{"method": "BasketList", "arguments": {"OrderId": [1]}}
{"method": "DbDisconnect"}
{"id": 7, "method": "BasketList", "arguments": {"OrderId": 1}}
)";
  const ProgramRun batch = Brindleway(On({"--json", "-"}), input);
  EXPECT_EQ(batch.exitCode, kExitUsage) << batch.err;
  const std::vector<json> answers = JsonLines(batch.out);
  ASSERT_EQ(answers.size(), 6u) << batch.out;
  EXPECT_EQ(answers[0]["id"], 1);
  EXPECT_EQ(answers[0]["status"], 3);
  EXPECT_EQ(answers[1]["id"], "two");
  EXPECT_EQ(answers[1]["result"], "((V = A) OR (V = B))");
  EXPECT_FALSE(answers[1].contains("ReturnMsg"));
  for (int bad : {2, 3}) EXPECT_EQ(answers[bad]["error"]["kind"], "usage") << answers[bad];
  EXPECT_EQ(answers[4]["status"], 0);
  EXPECT_EQ(answers[5]["id"], 7);
  EXPECT_EQ(answers[5]["status"], -1) << answers[5];
}

// The demo creates its store and reports each call of a sale, here as JSON lines with the
// arguments it gave.
TEST_F(ProgramTest, DemoWalksASaleOnAStoreItCreates) {
  ProgramRun demo = Brindleway({"demo", "--json", "--store", (dir_ / "demo.mdb").string()});
  ASSERT_EQ(demo.exitCode, kExitOk) << demo.out << demo.err;
  const std::vector<json> calls = JsonLines(demo.out);
  ASSERT_EQ(calls.size(), 14u) << demo.out;
  EXPECT_EQ(calls.front()["arguments"]["iintDelivery"], "0");
  EXPECT_EQ(calls.back()["method"], "ListOfOrders");
  EXPECT_NE(demo.out.find("<CompInfo: brindleway.BuyAnOrder> Success"), String::npos);
}

// serve tells where it listens (after the shell that starts it tells its pid), answers from
// the store it was given and stops cleanly on SIGTERM. Its refused options are in the table.
TEST_F(ProgramTest, ServeAnswersFromItsStoreUntilSigterm) {
  const String command = "echo $$; exec " + String(BRINDLEWAY_PROGRAM) + " serve --store '" +
                         store_ + "' --listen 127.0.0.1:0";
  std::FILE* out = popen(command.c_str(), "r");
  int pid = 0, port = 0;
  const int read = std::fscanf(out, "%d serving http://127.0.0.1:%d/", &pid, &port);
  httplib::Result customers = httplib::Client("127.0.0.1", port).Get("/api/customers");
  if (pid > 0) kill(pid, SIGTERM);
  const int status = pclose(out);
  ASSERT_EQ(read, 2);
  ASSERT_TRUE(customers);
  EXPECT_EQ(customers->status, 200);
  EXPECT_NE(customers->body.find("Castellane"), String::npos);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == kExitOk) << status;
}

}  // namespace
}  // namespace brindlewayProj::cli
