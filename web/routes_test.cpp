// The service's routes over loopback, for what the storefront's walk through a sale leaves out:
// the JSON read back, the call route, refusals with their HTTP codes, many clients at once.
#include <thread>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "web/test_service.h"

namespace brindlewayProj::web {
namespace {

using nlohmann::json;
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
struct Refusal {
  const char* method;
  const char* path;
  String body;
  int httpStatus;
  const char* text;
};

TEST_F(RoutesTest, RefusalsAnswerTheirCodeAndMessage) {
  const Refusal refusals[] = {
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
  for (const Refusal& refusal : refusals) {
    const Reply reply = Send(client_, refusal.method, refusal.path, refusal.body);
    EXPECT_EQ(reply.httpStatus, refusal.httpStatus) << refusal.method << ' ' << refusal.path;
    EXPECT_NE(reply.body.dump().find(refusal.text), String::npos) << reply.body;
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

}  // namespace
}  // namespace brindlewayProj::web
