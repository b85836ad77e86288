// The storefront in headless Chromium, driven through WebDriver's HTTP protocol: a sale walked
// through the page, checked on the page and in the store, and a screenshot of it.
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
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

// chromedriver on a free loopback port, and one browser session on it that opens `url`.
class Browser {
 public:
  // The shell that starts chromedriver tells its pid; chromedriver then tells its port.
  explicit Browser(const String& url)
      : out_(popen((String("echo $$; exec ") + kDriver + " --port=0").c_str(), "r")) {
    std::fscanf(out_, "%d", &pid_);
    for (char line[512]; port_ == 0 && std::fgets(line, sizeof line, out_);) {
      std::sscanf(line, "ChromeDriver was started successfully on port %d", &port_);
    }
    // Headless, as root in a container, with nothing fetched in the background.
    const json args = {"--headless=new", "--no-sandbox", "--disable-gpu",
                       "--disable-dev-shm-usage", "--disable-background-networking",
                       "--window-size=1280,1000"};
    const json options = {{"binary", kChromium}, {"args", args}};
    const json session = Command(
        "/session", {{"capabilities", {{"alwaysMatch", {{"goog:chromeOptions", options}}}}}});
    if (session.is_object()) session_ = "/session/" + session.value("sessionId", "");
    Command(session_ + "/url", {{"url", url}});
  }
  ~Browser() {
    if (!session_.empty()) httplib::Client("127.0.0.1", port_).Delete(session_);
    if (pid_ > 0) kill(pid_, SIGTERM);
    pclose(out_);
  }

  // A WebDriver command (POST with a body, else GET) and its value; a failure fails the test.
  json Command(const String& path, const json& body = nullptr) {
    httplib::Client driver("127.0.0.1", port_);
    httplib::Result result =
        body.is_null() ? driver.Get(path) : driver.Post(path, body.dump(), "application/json");
    if (!result || result->status != 200) {
      ADD_FAILURE() << path << ": " << (result ? result->body : "chromedriver did not answer");
      return nullptr;
    }
    return json::parse(result->body)["value"];
  }

  // The WebDriver path of the element `css` finds.
  String Element(const String& css) {
    const json found = Command(session_ + "/element", {{"using", "css selector"}, {"value", css}});
    return session_ + "/element/" + (found.is_object() ? found[kElementKey].get<String>() : "");
  }
  void Click(const String& css) { Command(Element(css) + "/click", json::object()); }
  void Type(const String& css, const String& text) {
    const String element = Element(css);
    Command(element + "/clear", json::object());
    Command(element + "/value", {{"text", text}});
  }
  json Script(const String& script) {
    return Command(session_ + "/execute/sync", {{"script", script}, {"args", json::array()}});
  }
  String Text(const String& css) {
    return Script("return document.querySelector('" + css + "').innerText;").get<String>();
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
  // A PNG of the window, written to `file`.
  void Screenshot(const String& file) {
    std::FILE* decode = popen(("base64 -d >'" + file + "'").c_str(), "w");
    std::fputs(Command(session_ + "/screenshot").get<String>().c_str(), decode);
    EXPECT_EQ(pclose(decode), 0) << file;
  }

 private:
  std::FILE* out_;
  pid_t pid_ = 0;
  int port_ = 0;
  String session_;
};

TEST(StorefrontBrowserTest, ASaleThroughThePage) {
  if (access(kChromium, X_OK) != 0 || access(kDriver, X_OK) != 0) {
    const char* needs = "needs chromium and chromium-driver (scripts/install-deps installs them)";
    if (std::getenv("CI") || std::getenv("BRINDLEWAY_REQUIRE_ALL")) FAIL() << needs;
    GTEST_SKIP() << needs;
  }
  TestService service;
  Browser browser(service.url() + "/");
  // The catalogue and the customers as the service lists them: by name, with their fields.
  ASSERT_TRUE(browser.WaitForText("#catalogue tbody", "Alder Tea Tin\tFernbrook Goods\t7.50"));
  EXPECT_TRUE(browser.WaitForText("#customer", "Tobin Arkwright\nOona Castellane\n"));

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
  EXPECT_TRUE(browser.WaitForText("#message", "brindleway.ModifyOrderQuantity> Success"));
  const char* screenshot = std::getenv("BRINDLEWAY_SCREENSHOT");
  browser.Screenshot(screenshot ? screenshot : BRINDLEWAY_SCREENSHOT);

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

  browser.Click("#shipped-orders button[aria-label^='Delete order']");
  EXPECT_TRUE(browser.WaitForText("#message", "brindleway.DeleteAnOrder> 1 records deleted"));
  EXPECT_TRUE(browser.WaitForText("#shipped-orders", "None."));
}

}  // namespace
}  // namespace brindlewayProj::web
