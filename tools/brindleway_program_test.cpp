// The brindleway program as a script runs it: output, messages and exit codes.
#include <dlfcn.h>
#include <sys/wait.h>

#include <fstream>
#include <regex>
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "server/server_exports.h"
#include "server/type_library.h"
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

  // Runs the program with `words` (none may hold a single quote) and `input` on its standard
  // input.
  ProgramRun Brindleway(const std::vector<String>& words, const String& input = "") const {
    std::ofstream(dir_ / "in") << input;
    String command =
        "BRINDLEWAY_REGISTRY='" + (dir_ / "registry").string() + "' " + BRINDLEWAY_PROGRAM;
    for (const String& word : words) command += " '" + word + "'";
    command += " <'" + (dir_ / "in").string() + "' >'" + (dir_ / "out").string() + "' 2>'" +
               (dir_ / "err").string() + "'";
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

  ProgramRun Call(const std::vector<String>& words, const String& input = "") const {
    return Brindleway(On(words), input);
  }

  // Every line of `text` as JSON.
  static std::vector<nlohmann::json> JsonLines(const String& text) {
    std::vector<nlohmann::json> lines;
    std::istringstream in(text);
    for (String line; std::getline(in, line);) lines.push_back(nlohmann::json::parse(line));
    return lines;
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
      {{"frobnicate"}, kExitUsage, "unknown command 'frobnicate'"},
      {{"create", "--bogus", store_.string()}, kExitUsage, "--bogus"},
      {On({"BasketList", "OrderId=1", "--frobnicate"}), kExitUsage, "--frobnicate"},
      {{"-q", "-v", "register"}, kExitUsage, "excludes"},
      {On({"-"}), kExitUsage, "--json -"},
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
  EXPECT_NE(unregistered.err.find("run 'brindleway register'"), String::npos) << unregistered.err;
}

// Options stand before or after the command, the method and its arguments, as --opt=value or
// --opt value; -q leaves only the exit code, -v tells where the object came from.
TEST_F(ProgramTest, OptionsStandAnywhereOnTheLine) {
  ASSERT_EQ(Brindleway({"register"}).exitCode, kExitOk);
  const String store = store_.string();
  const ProgramRun plain = Brindleway({"call", "--store", store, "BasketList", "OrderId=1"});
  ASSERT_EQ(plain.exitCode, kExitOk) << plain.err;
  EXPECT_NE(plain.out.find("ostrProductNameCol: 3 entries"), String::npos) << plain.out;
  const std::vector<std::vector<String>> placements = {
      {"call", "--store=" + store, "BasketList", "OrderId=1"},
      {"call", "BasketList", "--store", store, "OrderId=1"},
      {"call", "BasketList", "OrderId=1", "--store=" + store},
  };
  for (const std::vector<String>& words : placements) {
    const ProgramRun run = Brindleway(words);
    EXPECT_EQ(run.exitCode, kExitOk) << words[1] << ' ' << words[2] << ": " << run.err;
    EXPECT_EQ(run.out, plain.out) << words[1] << ' ' << words[2];
  }
  for (const std::vector<String>& words :
       {std::vector<String>{"-q", "call", "--store", store, "BasketList", "OrderId=1"},
        std::vector<String>{"call", "--store", store, "BasketList", "OrderId=1", "--quiet"}}) {
    const ProgramRun quiet = Brindleway(words);
    EXPECT_EQ(quiet.exitCode, kExitOk);
    EXPECT_EQ(quiet.out, "");
  }
  const ProgramRun verbose =
      Brindleway({"call", "BasketList", "OrderId=1", "-v", "--store", store});
  EXPECT_EQ(verbose.out, plain.out);
  EXPECT_NE(verbose.err.find("registry " + (dir_ / "registry").string() + ", server file "),
            String::npos)
      << verbose.err;
}

// What the text report quotes it escapes, so that every value keeps to its line; --json gives
// the same call as one object: dates in ISO 8601, collections as arrays, recordsets as arrays
// of objects keyed by field name.
TEST_F(ProgramTest, TextAndJsonReportsOfTheSameCalls) {
  ASSERT_EQ(Brindleway({"register"}).exitCode, kExitOk);
  const String description = "Say \"hi\"\nthen\tgo \\ back";
  ProgramRun started = Call({"StartNewOrder", "ilngCustomerId=2", "iintDelivery=0",
                             "idtmOrderDate=2026-11-22 14:05", "istrDescription=" + description});
  ASSERT_EQ(started.exitCode, kExitOk) << started.err;
  std::smatch order;
  ASSERT_TRUE(std::regex_search(started.out, order, std::regex("olngOrderId: (\\d+)")));
  ASSERT_EQ(
      Call({"ProductToBuy", "ilngOrderId=" + order[1].str(), "ilngProductId=2", "ilngQuantity=3"})
          .exitCode,
      kExitOk);

  const ProgramRun text = Call({"OrderDetail", "OrderId=" + order[1].str()});
  EXPECT_NE(text.out.find("odtmOrderDate: 2026-11-22T14:05:00\n"), String::npos) << text.out;
  EXPECT_NE(text.out.find("ostrDescription: \"Say \\\"hi\\\"\\nthen\\tgo \\\\ back\"\n"),
            String::npos)
      << text.out;
  const ProgramRun detail = Call({"--json", "OrderDetail", "OrderId=" + order[1].str()});
  ASSERT_EQ(detail.exitCode, kExitOk) << detail.err;
  const nlohmann::json answer = nlohmann::json::parse(detail.out);
  EXPECT_EQ(answer["status"], 1);
  EXPECT_EQ(answer["ReturnMsg"], "<CompInfo: brindleway.OrderDetail> Found 1 records");
  EXPECT_EQ(answer["changed"]["odtmOrderDate"], "2026-11-22T14:05:00");
  EXPECT_EQ(answer["changed"]["ostrDescription"], "Say \"hi\"\nthen\tgo \\ back");
  EXPECT_EQ(answer["changed"]["olngCustomerId"], 2);
  EXPECT_FALSE(answer["changed"].contains("OrderId"));

  const nlohmann::json table =
      nlohmann::json::parse(Call({"BasketTable", "OrderId=" + order[1].str(), "--json"}).out);
  ASSERT_EQ(table["changed"]["orsQueryResult"].size(), 1u) << table;
  const nlohmann::json& row = table["changed"]["orsQueryResult"][0];
  EXPECT_EQ(row["Quantity"], 3);
  EXPECT_DOUBLE_EQ(row["Extended Price"].get<double>(), 3 * row["ProductPrice"].get<double>());
  const nlohmann::json names =
      nlohmann::json::parse(Call({"--json", "BasketList", "OrderId=1"}).out);
  EXPECT_EQ(names["changed"]["ostrProductNameCol"].size(), 3u) << names;

  const ProgramRun refused = Call({"--json", "BasketList", "OrderId=x"});
  EXPECT_EQ(refused.exitCode, kExitUsage);
  EXPECT_EQ(nlohmann::json::parse(refused.out)["error"]["kind"], "usage");
}

// One process answers every line, in order, on one object: after DbDisconnect the same object
// has no store. Bad lines are answered and skipped; the exit code is the most serious one.
TEST_F(ProgramTest, BatchAnswersEveryLineOnOneObject) {
  ASSERT_EQ(Brindleway({"register"}).exitCode, kExitOk);
  const String input =
      R"({"id": 1, "method": "BasketList", "arguments": {"OrderId": 1}})"
      "\n\n"
      R"({"id": "two", "method": "BuildMultiCond",)"
      R"( "arguments": {"sField": "Vendor", "colCond": ["A", "B"], "bQuote": true}})"
      "\n{oops\n"
      R"({"method": "BasketList", "arguments": {"OrderId": [1]}})"
      "\n"
      R"({"method": "DbDisconnect"})"
      "\n"
      R"({"id": 7, "method": "BasketList", "arguments": {"OrderId": 1}})"
      "\n";
  const ProgramRun batch = Call({"--json", "-"}, input);
  EXPECT_EQ(batch.exitCode, kExitUsage) << batch.err;
  const std::vector<nlohmann::json> answers = JsonLines(batch.out);
  ASSERT_EQ(answers.size(), 6u) << batch.out;
  EXPECT_EQ(answers[0]["id"], 1);
  EXPECT_EQ(answers[0]["status"], 3);
  EXPECT_EQ(answers[1]["id"], "two");
  EXPECT_EQ(answers[1]["result"], "((Vendor = 'A') OR (Vendor = 'B'))");
  EXPECT_FALSE(answers[1].contains("ReturnMsg"));
  for (int bad : {2, 3}) EXPECT_EQ(answers[bad]["error"]["kind"], "usage") << answers[bad];
  EXPECT_EQ(answers[4]["status"], 0);
  EXPECT_EQ(answers[5]["id"], 7);
  EXPECT_EQ(answers[5]["status"], -1) << answers[5];
}

TEST_F(ProgramTest, HelpListsEveryMethodFromTheTypeLibrary) {
  ProgramRun help = Brindleway({"call", "--help"});
  EXPECT_EQ(help.exitCode, kExitOk);
  for (const server::MethodInfo& method : server::Methods()) {
    EXPECT_NE(help.out.find(server::Signature(method)), String::npos) << method.name;
  }
  for (const char* command : {"create", "register", "demo"}) {
    EXPECT_EQ(Brindleway({command, "--help"}).exitCode, kExitOk) << command;
  }
  const ProgramRun method = Brindleway({"call", "basketlist", "--help"});
  EXPECT_EQ(method.exitCode, kExitOk);
  EXPECT_EQ(method.out.rfind(server::Signature(*server::FindMethod("BasketList")), 0), 0u)
      << method.out;
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
  const ProgramRun json = Brindleway({"demo", "--json", "--store", fresh.string()});
  ASSERT_EQ(json.exitCode, kExitOk) << json.err;
  const std::vector<nlohmann::json> calls = JsonLines(json.out);
  ASSERT_EQ(calls.size(), 14u) << json.out;
  EXPECT_EQ(calls.front()["arguments"]["iintDelivery"], "0");
  EXPECT_EQ(calls.back()["method"], "ListOfOrders");
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
