// The service over loopback: the storefront in headless Chromium, driven through WebDriver's
// HTTP protocol (a sale walked through the page, checked on the page and in the store, and a
// screenshot of it); and its routes, for what that walk leaves out: the JSON read back, the call
// route, refusals with their HTTP codes, many clients at once.
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
using testing::SqlScalar;

struct Reply {
  int httpStatus;
  json body;
};

Reply Send(httplib::Client& client, const String& method, const String& path,
           const String& body = "") {
  httplib::Request request;
  request.method = method;
  request.path = path;
  request.body = body;
  request.set_header("Content-Type", "application/json");
  httplib::Result result = client.send(request);
  if (!result) return {-1, json(httplib::to_string(result.error()))};
  EXPECT_NE(result->get_header_value("Content-Type").find("application/json"), String::npos);
  return {result->status, json::parse(result->body)};
}

class RoutesTest : public ::testing::Test {
 protected:
  Reply Call(const String& method, const String& path, const json& body = nullptr) {
    return Send(client_, method, path, body.is_null() ? "" : body.dump());
  }
  String Sql(const String& query) { return SqlScalar(service_.store(), query); }

  TestService service_;
  httplib::Client client_ = service_.Client();
};

// Dates go in and come out as ISO 8601, what the method left blank is null, the listings are
// read into objects, and a purchase ships unless told otherwise.
TEST_F(RoutesTest, AnOrderReadBackAndBought) {
  Reply started =
      Call("POST", "/api/orders",
           {{"customerId", 6}, {"description", "Web sale"}, {"orderDate", "2026-11-20"}});
  EXPECT_EQ(started.body["ReturnMsg"], "<CompInfo: brindleway.StartNewOrder> Success");
  const Long id = started.body["orderId"].get<Long>();
  const String path = "/api/orders/" + std::to_string(id);
  EXPECT_EQ(Call("POST", path + "/basket", {{"productId", 3}, {"quantity", 2}}).httpStatus, 200);

  Reply read = Call("GET", path);
  json order = json::parse(R"({"customerId": 6, "firstName": "Oona", "lastName": "Castellane",
      "orderDate": "2026-11-20", "deliveryDate": null, "delivery": 0, "description": "Web sale"})");
  order["orderId"] = id;
  EXPECT_EQ(read.body["order"], order);
  EXPECT_EQ(read.body["basket"]["status"], 1);
  EXPECT_EQ(read.body["basket"]["rows"], json::parse(R"([{"ProductName": "Copper Kettle",
      "Vendor": "Fernbrook Goods", "ProductPrice": 39, "Quantity": 2, "Extended Price": 78}])"));
  EXPECT_EQ(
      Call("GET", "/api/customers/6/orders?state=open").body["orders"],
      json::array({{{"orderId", id}, {"orderDate", "2026-11-20"}, {"description", "Web sale"}}}));

  EXPECT_EQ(Call("POST", path + "/purchase", {{"deliveryDate", "2026-11-27"}}).httpStatus, 200);
  EXPECT_EQ(Call("GET", "/api/customers/6/orders?state=open").body["orders"], json::array());
  EXPECT_EQ(Sql("SELECT Delivery || ' ' || DeliveryDate FROM Orders WHERE CustomerId = 6"),
            "1 2026-11-27 00:00:00");
}

// The call route answers as 'brindleway call --json' answers.
TEST_F(RoutesTest, TheCallRouteAnswersAsTheProgramDoes) {
  Reply listed = Call("POST", "/api/call/basketlist", {{"OrderId", 2}});
  EXPECT_EQ(listed.httpStatus, 200);
  EXPECT_EQ(listed.body, json::parse(R"({"method": "BasketList", "status": 3,
      "ReturnMsg": "<CompInfo: brindleway.BasketList> Found 3 records", "changed":
      {"ostrProductNameCol": ["Basalt Mortar", "Copper Kettle", "Iron Trivet"]}})"));
}

// Refusals: the HTTP code, and a part of the body that tells who refused (the method's
// ReturnMsg, whose exact texts the component's tests hold, or the service's message).
TEST_F(RoutesTest, RefusalsAnswerTheirCodeAndMessage) {
  // Method, path, body, HTTP code, and a part of the answer's body.
  const std::tuple<const char*, const char*, String, int, const char*> refusals[] = {
      {"GET", "/api/orders/999", "", 404, "brindleway.OrderDetail>"},
      {"DELETE", "/api/orders/999", "", 404, "brindleway.DeleteAnOrder>"},
      {"POST", "/api/orders/999/purchase", R"({"deliveryDate": "2026-12-01"})", 404, "BuyAnOrder>"},
      {"PATCH", "/api/orders/2/basket/1", R"({"quantity": 2})", 404, "ModifyOrderQuantity>"},
      {"DELETE", "/api/orders/2/basket/1", "", 404, "brindleway.RemoveFromBasket>"},
      {"POST", "/api/orders/2/basket", R"({"productId": 99, "quantity": 1})", 422, "ProductToBuy>"},
      {"POST", "/api/call/LookupOrderedProduct", R"({"ProductName": "Tin\""})", 400, "> Syntax"},
      {"GET", "/api/orders/0", "", 400, "the order id must be a whole number"},
      {"GET", "/api/orders/2147483648", "", 400, "the order id must be a whole number"},
      {"POST", "/api/orders", "{}", 400, "customerId is required"},
      {"POST", "/api/orders", "{\"customerId\": 1", 400, "the body is not valid JSON"},
      {"POST", "/api/orders", "[1]", 400, "the body must be a JSON object"},
      {"POST", "/api/orders", R"({"customerId": 1, "colour": "red"})", 400, "unknown member"},
      {"POST", "/api/orders", R"({"customerId": 1.5})", 400, "customerId must be a whole"},
      {"POST", "/api/orders", R"({"orderDate": "2026-02-30"})", 400, "orderDate must be a date"},
      {"POST", "/api/orders/2/purchase", R"({"delivery": 40000})", 400, "from -32768 to 32767"},
      {"PATCH", "/api/orders/2/basket/3", R"({"quantity": 0})", 400, "quantity must be"},
      {"GET", "/api/customers/1/orders?state=later", "", 400, "state must be all, open or"},
      {"POST", "/api/call/BasketList", R"({"OrderId": 2, "Colour": 1})", 400, "no parameter"},
      {"POST", "/api/call/BasketList", R"({"OrderId": {"a": 1}})", 400, "a value must be text"},
      {"POST", "/api/call/NoSuchMethod", "", 404, "no method 'NoSuchMethod'"},
      {"POST", "/api/call/DbDisconnect", "", 403, "DbDisconnect is not offered over HTTP"},
      {"PUT", "/api/orders", "", 404, "no route PUT /api/orders"},
      {"POST", "/api/orders", String(70 * 1024, 'x'), 413, "larger than 65536 bytes"},
  };
  for (const auto& [method, path, body, httpStatus, text] : refusals) {
    const Reply reply = Send(client_, method, path, body);
    EXPECT_EQ(reply.httpStatus, httpStatus) << method << ' ' << path;
    EXPECT_NE(reply.body.dump().find(text), String::npos) << reply.body;
  }
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM OrderBasket"), "12");  // nothing refused was stored
}

// A store that cannot be opened is the service's failure, not the client's.
TEST_F(RoutesTest, AStoreThatCannotBeOpenedAnswers503) {
  std::filesystem::remove(service_.store());
  const Reply products = Call("GET", "/api/products");
  EXPECT_EQ(products.httpStatus, 503);
  EXPECT_NE(products.body.dump().find(R"("kind":"store")"), String::npos) << products.body;
}

// Clients on more connections than workers, each selling at once: every sale is stored once,
// under a key of its own, by the workers' own objects.
TEST(ServiceThreadsTest, ConcurrentSalesAreEachStoredOnce) {
  TestService service(3);
  constexpr int kClients = 6, kSales = 8;
  std::vector<std::thread> clients;
  for (int c = 0; c < kClients; ++c) {
    clients.emplace_back([&service] {
      httplib::Client client = service.Client();
      for (int s = 0; s < kSales; ++s) {
        const Reply started = Send(client, "POST", "/api/orders", R"({"customerId": 5})");
        const String order = "/api/orders/" + started.body["orderId"].dump();
        const String line = R"({"productId": 4, "quantity": 1})";
        EXPECT_EQ(Send(client, "POST", order + "/basket", line).httpStatus, 200) << order;
        const String delivery = R"({"deliveryDate": "2026-12-24"})";
        EXPECT_EQ(Send(client, "POST", order + "/purchase", delivery).httpStatus, 200) << order;
      }
    });
  }
  for (std::thread& client : clients) client.join();
  EXPECT_EQ(SqlScalar(service.store(),
                      "SELECT COUNT(DISTINCT OrderId) FROM Orders JOIN OrderBasket "
                      "USING (OrderId) WHERE CustomerId = 5 AND Delivery = 1"),
            std::to_string(kClients * kSales));
}

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
