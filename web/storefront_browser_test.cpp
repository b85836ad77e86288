// The storefront in headless Chromium, driven through WebDriver's HTTP protocol: a sale walked
// through the page, checked on the page and in the store, and a screenshot of it.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "web/test_service.h"

namespace brindlewayProj::web {
namespace {

using nlohmann::json;
using namespace std::chrono_literals;

constexpr const char* kChromium = "/usr/bin/chromium";
constexpr const char* kDriver = "/usr/bin/chromedriver";
constexpr const char* kElementKey = "element-6066-11e4-a52e-4f735466cecf";

// A loopback port that was free a moment ago: bound to port 0 and let go.
int FreeLoopbackPort() {
  const int probe = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  bind(probe, reinterpret_cast<sockaddr*>(&address), sizeof address);
  getsockname(probe, reinterpret_cast<sockaddr*>(&address), &length);
  close(probe);
  return ntohs(address.sin_port);
}

// chromedriver on a loopback port, and one browser session on it.
class Browser {
 public:
  Browser() : port_(FreeLoopbackPort()), driver_("127.0.0.1", port_) {
    pid_ = fork();
    if (pid_ == 0) {
      const String portArg = "--port=" + std::to_string(port_);
      execl(kDriver, kDriver, portArg.c_str(), "--silent", nullptr);
      _exit(127);
    }
    for (int tries = 0; tries < 100 && !driver_.Get("/status"); ++tries) std::this_thread::sleep_for(100ms);
    const String profile = (profile_ / "profile").string();
    json args = {"--headless=new", "--no-sandbox", "--disable-gpu", "--no-first-run",
                 "--disable-background-networking", "--disable-component-update", "--disable-sync",
                 "--disable-quic", "--disable-dev-shm-usage", "--window-size=1280,1000",
                 "--user-data-dir=" + profile};
    json session = Command("POST", "/session",
                           {{"capabilities",
                             {{"alwaysMatch",
                               {{"browserName", "chrome"},
                                {"goog:chromeOptions", {{"binary", kChromium}, {"args", args}}}}}}}});
    session_ = "/session/" + session["sessionId"].get<String>();
  }
  ~Browser() {
    if (!session_.empty()) driver_.Delete(session_);
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
  }

  // A WebDriver command; its "value". A failed command fails the test.
  json Command(const String& method, const String& path, const json& body = json::object()) {
    httplib::Result result = method == "GET"    ? driver_.Get(path)
                             : method == "DELETE" ? driver_.Delete(path)
                                                  : driver_.Post(path, body.dump(), "application/json");
    if (!result) {
      ADD_FAILURE() << method << ' ' << path << ": chromedriver did not answer";
      return nullptr;
    }
    json answer = json::parse(result->body, nullptr, false);
    if (result->status != 200) ADD_FAILURE() << method << ' ' << path << ": " << result->body;
    return answer.is_object() ? answer["value"] : json();
  }
  json Session(const String& method, const String& path, const json& body = json::object()) {
    return Command(method, session_ + path, body);
  }

  void Open(const String& url) { Session("POST", "/url", {{"url", url}}); }
  String Element(const String& css) {
    json found = Session("POST", "/element", {{"using", "css selector"}, {"value", css}});
    return found.is_object() ? found[kElementKey].get<String>() : "";
  }
  void Click(const String& css) { Session("POST", "/element/" + Element(css) + "/click"); }
  void Type(const String& css, const String& text) {
    const String element = "/element/" + Element(css);
    Session("POST", element + "/clear");
    Session("POST", element + "/value", {{"text", text}});
  }
  json Script(const String& script) {
    return Session("POST", "/execute/sync", {{"script", script}, {"args", json::array()}});
  }
  String Text(const String& css) {
    return Script("const e = document.querySelector('" + css + "'); return e ? e.innerText : '';")
        .get<String>();
  }
  // Waits up to 10 s for the text of `css` to hold `part`.
  bool WaitForText(const String& css, const String& part) {
    for (auto end = std::chrono::steady_clock::now() + 10s; std::chrono::steady_clock::now() < end;
         std::this_thread::sleep_for(50ms)) {
      if (Text(css).find(part) != String::npos) return true;
    }
    ADD_FAILURE() << css << " never showed '" << part << "'; it shows '" << Text(css) << "'";
    return false;
  }
  std::string Screenshot() { return Decode(Session("GET", "/screenshot").get<String>()); }

 private:
  static std::string Decode(const String& base64) {
    std::string bytes;
    int bits = 0, buffer = 0;
    for (char c : base64) {
      const auto at = String("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/").find(c);
      if (at == String::npos) continue;
      buffer = (buffer << 6) | static_cast<int>(at);
      if ((bits += 6) >= 8) bytes.push_back(static_cast<char>((buffer >> (bits -= 8)) & 0xFF));
    }
    return bytes;
  }

  testing::TempDir profile_;
  int port_;
  httplib::Client driver_;
  pid_t pid_ = -1;
  String session_;
};

bool Required() { return std::getenv("CI") || std::getenv("BRINDLEWAY_REQUIRE_ALL"); }

TEST(StorefrontBrowserTest, ASaleThroughThePage) {
  if (access(kChromium, X_OK) != 0 || access(kDriver, X_OK) != 0) {
    if (Required()) FAIL() << kChromium << " and " << kDriver << " are needed: run scripts/install-deps";
    GTEST_SKIP() << "needs chromium and chromium-driver (scripts/install-deps installs them); "
                    "with CI or BRINDLEWAY_REQUIRE_ALL set this test fails instead";
  }
  TestService service;
  Browser browser;
  browser.Open(service.url() + "/");
  ASSERT_TRUE(browser.WaitForText("#catalogue", "Juniper Soap"));

  browser.Click("#customer option[value='6']");
  browser.Type("#description", "Birthday hamper\xee\x80\x87");  // Enter submits, from the keyboard
  ASSERT_TRUE(browser.WaitForText("#current-order", "Birthday hamper"));
  browser.Type("#qty-3", "2");
  browser.Click("button[aria-label='Add Copper Kettle to the basket']");
  ASSERT_TRUE(browser.WaitForText("#basket tbody", "Copper Kettle"));
  browser.Click("button[aria-label='Add Gorse Honey to the basket']");
  ASSERT_TRUE(browser.WaitForText("#basket tbody", "Gorse Honey"));
  browser.Type("#line-3", "3");
  browser.Click("button[aria-label='Update the quantity of Copper Kettle']");
  ASSERT_TRUE(browser.WaitForText("#order-total", "125.40"));
  EXPECT_TRUE(browser.WaitForText("#message", "<CompInfo: brindleway.ModifyOrderQuantity> Success"));
  const char* screenshot = std::getenv("BRINDLEWAY_SCREENSHOT");
  std::ofstream(screenshot ? screenshot : BRINDLEWAY_SCREENSHOT, std::ios::binary)
      << browser.Screenshot();

  browser.Type("#line-3", "0");  // refused on the page, with a message
  browser.Click("button[aria-label='Update the quantity of Copper Kettle']");
  EXPECT_TRUE(browser.WaitForText("#message", "whole number of 1 or more"));
  browser.Click("button[aria-label='Remove Gorse Honey from the basket']");
  ASSERT_TRUE(browser.WaitForText("#order-total", "117.00"));
  browser.Script("document.getElementById('delivery-date').value = '2026-12-18';");
  browser.Click("#place-order");
  ASSERT_TRUE(browser.WaitForText("#message", "<CompInfo: brindleway.BuyAnOrder> Success"));
  EXPECT_TRUE(browser.WaitForText("#shipped-orders", "Birthday hamper"));
  EXPECT_TRUE(browser.WaitForText("#current-order", "shipped for 2026-12-18"));

  EXPECT_EQ(testing::SqlRows(service.store(),
                             "SELECT o.Description, o.Delivery, o.DeliveryDate, b.ProductId, "
                             "b.Quantity FROM Orders o JOIN OrderBasket b USING (OrderId) "
                             "WHERE o.CustomerId = 6"),
            (std::vector<testing::SqlRow>{
                {"Birthday hamper", "1", "2026-12-18 00:00:00", "3", "3"}}));

  browser.Click("#shipped-orders button[aria-label^='Delete order']");
  EXPECT_TRUE(browser.WaitForText("#message", "<CompInfo: brindleway.DeleteAnOrder> 1 records deleted"));
  EXPECT_EQ(testing::SqlScalar(service.store(), "SELECT COUNT(*) FROM Orders WHERE CustomerId = 6"), "0");
}

}  // namespace
}  // namespace brindlewayProj::web
