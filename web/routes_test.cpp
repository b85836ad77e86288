// Every route of the service over loopback: a sale from start to delete, the late-bound call
// route, the refusals with their HTTP codes, and many clients selling at once.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <set>
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
  httplib::Result result =
      method == "GET"      ? client.Get(path)
      : method == "DELETE" ? client.Delete(path)
      : method == "PATCH"  ? client.Patch(path, body, "application/json")
                           : client.Post(path, body, "application/json");
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

TEST_F(RoutesTest, ASaleFromStartToDelete) {
  Reply started = Call("POST", "/api/orders", {{"customerId", 6}, {"description", "Web sale"},
                                               {"orderDate", "2026-11-20"}});
  ASSERT_EQ(started.httpStatus, 200) << started.body;
  EXPECT_EQ(started.body["status"], 0);
  EXPECT_EQ(started.body["ReturnMsg"], "<CompInfo: brindleway.StartNewOrder> Success");
  const String order = "/api/orders/" + std::to_string(started.body["orderId"].get<Long>());

  for (auto [product, quantity] : {std::pair{3, 2}, {7, 1}, {10, 5}}) {
    Reply added = Call("POST", order + "/basket", {{"productId", product}, {"quantity", quantity}});
    ASSERT_EQ(added.httpStatus, 200) << added.body;
    EXPECT_EQ(added.body["ReturnMsg"], "<CompInfo: brindleway.ProductToBuy> Success");
  }
  Reply changed = Call("PATCH", order + "/basket/3", {{"quantity", 3}});
  EXPECT_EQ(changed.httpStatus, 200);
  EXPECT_EQ(changed.body["ReturnMsg"], "<CompInfo: brindleway.ModifyOrderQuantity> Success");
  Reply removed = Call("DELETE", order + "/basket/10");
  EXPECT_EQ(removed.httpStatus, 200);
  EXPECT_EQ(removed.body["ReturnMsg"], "<CompInfo: brindleway.RemoveFromBasket> 1 records deleted");

  Reply read = Call("GET", order);
  ASSERT_EQ(read.httpStatus, 200) << read.body;
  EXPECT_EQ(read.body["ReturnMsg"], "<CompInfo: brindleway.OrderDetail> Found 1 records");
  EXPECT_EQ(read.body["order"]["lastName"], "Castellane");
  EXPECT_EQ(read.body["order"]["orderDate"], "2026-11-20");
  EXPECT_EQ(read.body["order"]["deliveryDate"], nullptr);
  EXPECT_EQ(read.body["basket"]["status"], 2);
  EXPECT_EQ(read.body["basket"]["rows"][0]["ProductName"], "Copper Kettle");
  EXPECT_EQ(read.body["basket"]["rows"][0]["Extended Price"], 117.0);

  Reply open = Call("GET", "/api/customers/6/orders?state=open");
  ASSERT_EQ(open.body["orders"].size(), 1u);
  EXPECT_EQ(open.body["orders"][0]["orderDate"], "2026-11-20");
  EXPECT_EQ(open.body["orders"][0]["description"], "Web sale");

  Reply bought = Call("POST", order + "/purchase", {{"deliveryDate", "2026-11-27"}});
  EXPECT_EQ(bought.httpStatus, 200);
  EXPECT_EQ(bought.body["ReturnMsg"], "<CompInfo: brindleway.BuyAnOrder> Success");
  EXPECT_EQ(Call("GET", "/api/customers/6/orders?state=shipped").body["orders"].size(), 1u);
  EXPECT_EQ(Call("GET", "/api/customers/6/orders?state=open").body["status"], 0);
  EXPECT_EQ(Sql("SELECT Delivery || ' ' || DeliveryDate FROM Orders WHERE CustomerId = 6"),
            "1 2026-11-27 00:00:00");

  Reply deleted = Call("DELETE", order);
  EXPECT_EQ(deleted.httpStatus, 200);
  EXPECT_EQ(deleted.body["ReturnMsg"], "<CompInfo: brindleway.DeleteAnOrder> 1 records deleted");
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM OrderBasket b JOIN Orders o USING (OrderId) "
                "WHERE o.CustomerId = 6"),
            "0");
}

TEST_F(RoutesTest, CatalogueCustomersAndTheCallRoute) {
  Reply products = Call("GET", "/api/products");
  ASSERT_EQ(products.body["products"].size(), 10u);
  EXPECT_EQ(products.body["products"][0],
            json({{"ProductId", 1}, {"ProductName", "Alder Tea Tin"},
                  {"Vendor", "Fernbrook Goods"}, {"ProductPrice", 7.5}}));
  EXPECT_EQ(Call("GET", "/api/customers").body["customers"][0]["LastName"], "Arkwright");

  // Answered as 'brindleway call --json' answers.
  Reply listed = Call("POST", "/api/call/basketlist", {{"OrderId", 2}});
  EXPECT_EQ(listed.httpStatus, 200);
  EXPECT_EQ(listed.body, json::parse(R"({"method": "BasketList", "status": 3,
      "ReturnMsg": "<CompInfo: brindleway.BasketList> Found 3 records", "changed":
      {"ostrProductNameCol": ["Basalt Mortar", "Copper Kettle", "Iron Trivet"]}})"));
  Reply condition = Call("POST", "/api/call/BuildMultiCond",
                         {{"sField", "Vendor"}, {"colCond", {"a", "b"}}, {"bQuote", true}});
  EXPECT_EQ(condition.body["result"], "((Vendor = 'a') OR (Vendor = 'b'))");
  EXPECT_EQ(Call("POST", "/api/call/BasketList").httpStatus, 400);  // OrderId is required
}

// Refusals: the HTTP code, and the ReturnMsg of the method or the error's message.
struct Refusal {
  const char* method;
  const char* path;
  const char* body;
  int httpStatus;
  const char* text;  // ReturnMsg, or a part of the error's message
};

TEST_F(RoutesTest, RefusalsAnswerTheirCodeAndMessage) {
  const Refusal refusals[] = {
      {"GET", "/api/orders/999", "", 404, "<CompWarning: brindleway.OrderDetail> Did not find any records"},
      {"DELETE", "/api/orders/999", "", 404, "<CompError: brindleway.DeleteAnOrder> No records found"},
      {"POST", "/api/orders/999/purchase", R"({"deliveryDate": "2026-12-01"})", 404,
       "<CompInfo: brindleway.BuyAnOrder> No records found. Nothing to update"},
      {"PATCH", "/api/orders/2/basket/1", R"({"quantity": 2})", 404,
       "<CompInfo: brindleway.ModifyOrderQuantity> No records found. Nothing to update"},
      {"DELETE", "/api/orders/2/basket/1", "", 404, "<CompError: brindleway.RemoveFromBasket> No records found"},
      {"POST", "/api/orders/2/basket", R"({"productId": 99, "quantity": 1})", 422,
       "<CompError: brindleway.ProductToBuy> You cannot add or change a record because a related "
       "record is required in table 'Products'."},
      {"POST", "/api/orders/999/basket", R"({"productId": 1, "quantity": 1})", 422,
       "<CompError: brindleway.ProductToBuy> You cannot add or change a record because a related "
       "record is required in table 'Orders'."},
      {"POST", "/api/orders", R"({"customerId": 99})", 422,
       "<CompError: brindleway.StartNewOrder> You cannot add or change a record because a related "
       "record is required in table 'Customers'."},
      {"POST", "/api/call/LookupOrderedProduct", R"({"ProductName": "Tin\""})", 400,
       "<CompError: brindleway.LookupOrderedProduct> Syntax error in query expression"},
      {"GET", "/api/orders/abc", "", 400, "the order id must be a whole number"},
      {"GET", "/api/orders/0", "", 400, "the order id must be a whole number"},
      {"GET", "/api/orders/2147483648", "", 400, "the order id must be a whole number"},
      {"POST", "/api/orders", "{}", 400, "customerId is required"},
      {"POST", "/api/orders", "{\"customerId\": 1", 400, "the body is not valid JSON"},
      {"POST", "/api/orders", "[1]", 400, "the body must be a JSON object"},
      {"POST", "/api/orders", R"({"customerId": 1, "colour": "red"})", 400, "unknown member \"colour\""},
      {"POST", "/api/orders", R"({"customerId": 1.5})", 400, "customerId must be a whole number"},
      {"POST", "/api/orders", R"({"customerId": 1, "orderDate": "2026-02-30"})", 400, "orderDate must be a date"},
      {"POST", "/api/orders/2/purchase", "{}", 400, "deliveryDate is required"},
      {"POST", "/api/orders/2/purchase", R"({"deliveryDate": "2026-12-01", "delivery": 40000})", 400,
       "delivery must be a whole number from -32768"},
      {"POST", "/api/orders/2/basket", R"({"productId": "1", "quantity": 1})", 400, "productId must be"},
      {"PATCH", "/api/orders/2/basket/3", R"({"quantity": 0})", 400, "quantity must be"},
      {"GET", "/api/customers/1/orders?state=later", "", 400, "state must be all, open or shipped"},
      {"POST", "/api/call/BasketList", R"({"OrderId": "seven"})", 400, "OrderId=\"seven\": Type mismatch"},
      {"POST", "/api/call/BasketList", R"({"OrderId": 2, "Colour": 1})", 400, "BasketList has no parameter 'Colour'"},
      {"POST", "/api/call/BasketList", R"({"OrderId": {"a": 1}})", 400, "a value must be text"},
      {"POST", "/api/call/NoSuchMethod", "", 404, "no method 'NoSuchMethod'"},
      {"POST", "/api/call/DbDisconnect", "", 403, "DbDisconnect is not offered over HTTP"},
      {"GET", "/api/nothing", "", 404, "no route GET /api/nothing"},
      {"PUT", "/api/orders", "", 404, "no route PUT /api/orders"},
  };
  for (const Refusal& refusal : refusals) {
    SCOPED_TRACE(String(refusal.method) + " " + refusal.path + " " + refusal.body);
    httplib::Request request;
    request.method = refusal.method;
    request.path = refusal.path;
    request.body = refusal.body;
    request.set_header("Content-Type", "application/json");
    httplib::Result result = client_.send(request);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, refusal.httpStatus);
    const json body = json::parse(result->body);
    const String text = body.contains("error") ? body["error"]["message"].get<String>()
                                               : body["ReturnMsg"].get<String>();
    EXPECT_NE(text.find(refusal.text), String::npos) << body;
  }
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM OrderBasket"), "12");  // nothing refused was stored
}

TEST_F(RoutesTest, LimitsOnWhatAClientSends) {
  Reply large = Call("POST", "/api/orders", {{"description", String(70 * 1024, 'x')}});
  EXPECT_EQ(large.httpStatus, 413);
  EXPECT_NE(large.body["error"]["message"].get<String>().find("larger than 65536 bytes"),
            String::npos);
  // A client that sends half a request and then nothing is let go after the read timeout.
  const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(service_.port()));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  ASSERT_EQ(connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  const String half = "POST /api/orders HTTP/1.1\r\nContent-Length: 100\r\n\r\n{";
  ASSERT_EQ(write(socket, half.data(), half.size()), static_cast<ssize_t>(half.size()));
  const auto start = std::chrono::steady_clock::now();
  char answer[512];
  while (read(socket, answer, sizeof answer) > 0) {
  }
  close(socket);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(6));
}

// Clients on more connections than workers, each selling at once: every sale is stored once,
// under a key of its own, by the workers' own objects.
TEST(ServiceThreadsTest, ConcurrentSalesAreEachStoredOnce) {
  TestService service(3);
  constexpr int kClients = 6;
  constexpr int kSales = 8;
  std::vector<std::vector<Long>> keys(kClients);
  std::vector<std::thread> clients;
  for (int c = 0; c < kClients; ++c) {
    clients.emplace_back([&, c] {
      httplib::Client client = service.Client();
      for (int s = 0; s < kSales; ++s) {
        Reply started = Send(client, "POST", "/api/orders", R"({"customerId": 5})");
        if (started.httpStatus != 200) continue;
        const String order = "/api/orders/" + std::to_string(started.body["orderId"].get<Long>());
        Send(client, "POST", order + "/basket", R"({"productId": 4, "quantity": 1})");
        if (Send(client, "POST", order + "/purchase", R"({"deliveryDate": "2026-12-24"})").httpStatus == 200)
          keys[c].push_back(started.body["orderId"].get<Long>());
      }
    });
  }
  for (std::thread& client : clients) client.join();
  std::set<Long> distinct;
  for (const auto& clientKeys : keys) distinct.insert(clientKeys.begin(), clientKeys.end());
  EXPECT_EQ(distinct.size(), std::size_t{kClients * kSales});
  EXPECT_EQ(SqlScalar(service.store(), "SELECT COUNT(*) FROM Orders o JOIN OrderBasket b USING "
                                       "(OrderId) WHERE o.CustomerId = 5 AND o.Delivery = 1"),
            std::to_string(kClients * kSales));
}

}  // namespace
}  // namespace brindlewayProj::web
