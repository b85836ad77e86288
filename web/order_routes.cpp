// The order and basket routes: each reads its path and body, calls its method on the
// worker's object, and answers the method's status and ReturnMsg with what it read.
#include <ctime>

#include <nlohmann/json.hpp>

#include <brindleway/collection.h>
#include "platform/calendar.h"
#include "tools/value_text.h"
#include "web/method_call.h"
#include "web/routes.h"

namespace brindlewayProj::web {
namespace {

using cli::GivenArgument;

GivenArgument Given(const char* parameter, const Variant& value) {
  return {parameter, value, CStr(value)};
}

// The arguments of `values` (read by ReadFields) that were given, under their parameters.
void AddGiven(std::vector<GivenArgument>& given, std::span<const char* const> parameters,
              const std::vector<std::optional<Variant>>& values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i]) given.push_back(Given(parameters[i], *values[i]));
  }
}

Answer Plain(const MethodAnswer& answer, OnZero zero) {
  return {HttpStatusOf(answer, zero), answer.Head()};
}

// A value the method wrote, or null where it left the supplied blank (no text, day 0, id 0).
Json Written(const Variant& value) {
  if (VarType(value) == vbString && CStr(value).empty()) return nullptr;
  if (VarType(value) == vbDate && CDate(value).serial == 0) return nullptr;
  if (VarType(value) == vbLong && CLng(value) == 0) return nullptr;
  return cli::JsonOf(value);
}

Date Today() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  platform::CivilTime civil;
  civil.year = local.tm_year + 1900;
  civil.month = local.tm_mon + 1;
  civil.day = local.tm_mday;
  return *platform::FromCivil(civil);
}

Answer StartOrder(const httplib::Request& request) {
  static constexpr BodyField kFields[] = {{"customerId", FieldKind::Id, true},
                                          {"orderDate", FieldKind::Date},
                                          {"deliveryDate", FieldKind::Date},
                                          {"description", FieldKind::Text}};
  static constexpr const char* kParameters[] = {"ilngCustomerId", "idtmOrderDate",
                                                "idtmDeliveryDate", "istrDescription"};
  std::vector<std::optional<Variant>> values = ReadFields(BodyObject(request), kFields);
  if (!values[1]) values[1] = Today();  // a new order is dated today unless told otherwise
  std::vector<GivenArgument> given{Given("iintDelivery", Integer{0})};
  AddGiven(given, kParameters, values);
  MethodAnswer answer = CallOnWorker("StartNewOrder", given);
  Answer reply = Plain(answer, OnZero::Ok);
  if (answer.Status() == 0) reply.body["orderId"] = CLng(answer.Value("olngOrderId"));
  return reply;
}

Answer ReadOrder(const httplib::Request& request) {
  const Long orderId = PathId(request, 1, "the order id");
  MethodAnswer detail = CallOnWorker("OrderDetail", std::vector{Given("OrderId", orderId)});
  Answer reply = Plain(detail, OnZero::NotFound);
  if (detail.Status() <= 0) return reply;
  reply.body["order"] = {{"orderId", orderId},
                         {"customerId", Written(detail.Value("olngCustomerId"))},
                         {"firstName", Written(detail.Value("ostrFirstName"))},
                         {"lastName", Written(detail.Value("ostrLastName"))},
                         {"orderDate", Written(detail.Value("odtmOrderDate"))},
                         {"deliveryDate", Written(detail.Value("odtmDeliveryDate"))},
                         {"delivery", CInt(detail.Value("ointDelivery"))},
                         {"description", Written(detail.Value("ostrDescription"))}};
  MethodAnswer basket = CallOnWorker("BasketTable", std::vector{Given("OrderId", orderId)});
  Json basketJson = basket.Head();
  basketJson["rows"] = basket.Status() >= 0 ? cli::JsonOf(basket.Value("orsQueryResult"))
                                            : Json::array();
  reply.body["basket"] = std::move(basketJson);
  reply.httpStatus = HttpStatusOf(basket, OnZero::Ok);
  return reply;
}

Answer DeleteOrder(const httplib::Request& request) {
  const Long orderId = PathId(request, 1, "the order id");
  return Plain(CallOnWorker("DeleteAnOrder", std::vector{Given("OrderId", orderId)}),
               OnZero::NotFound);
}

Answer PurchaseOrder(const httplib::Request& request) {
  static constexpr BodyField kFields[] = {{"deliveryDate", FieldKind::Date, true},
                                          {"delivery", FieldKind::Integer}};
  static constexpr const char* kParameters[] = {"idtmDeliveryDate", "iintDelivery"};
  const Long orderId = PathId(request, 1, "the order id");
  std::vector<std::optional<Variant>> values = ReadFields(BodyObject(request), kFields);
  if (!values[1]) values[1] = Integer{1};  // shipped, unless told otherwise
  std::vector<GivenArgument> given{Given("OrderId", orderId)};
  AddGiven(given, kParameters, values);
  return Plain(CallOnWorker("BuyAnOrder", given), OnZero::NotFound);
}

Answer AddToBasket(const httplib::Request& request) {
  static constexpr BodyField kFields[] = {{"productId", FieldKind::Id, true},
                                          {"quantity", FieldKind::Quantity, true}};
  static constexpr const char* kParameters[] = {"ilngProductId", "ilngQuantity"};
  std::vector<GivenArgument> given{Given("ilngOrderId", PathId(request, 1, "the order id"))};
  AddGiven(given, kParameters, ReadFields(BodyObject(request), kFields));
  return Plain(CallOnWorker("ProductToBuy", given), OnZero::Ok);
}

Answer ChangeQuantity(const httplib::Request& request) {
  static constexpr BodyField kFields[] = {{"quantity", FieldKind::Quantity, true}};
  static constexpr const char* kParameters[] = {"ilngQuantity"};
  std::vector<GivenArgument> given{Given("OrderId", PathId(request, 1, "the order id")),
                                   Given("ProductId", PathId(request, 2, "the product id"))};
  AddGiven(given, kParameters, ReadFields(BodyObject(request), kFields));
  return Plain(CallOnWorker("ModifyOrderQuantity", given), OnZero::NotFound);
}

Answer RemoveLine(const httplib::Request& request) {
  const std::vector given{Given("OrderId", PathId(request, 1, "the order id")),
                          Given("ProductId", PathId(request, 2, "the product id"))};
  return Plain(CallOnWorker("RemoveFromBasket", given), OnZero::NotFound);
}

// One line of an order listing, "id<TAB>date<TAB>description", as an object; a field the
// method wrote as "<Empty>" is null, and the date, written in the regional form, is read back
// into ISO 8601.
Json ListedOrder(const String& line) {
  const std::size_t first = line.find('\t');
  const std::size_t second = line.find('\t', first == String::npos ? first : first + 1);
  if (second == String::npos) return {{"line", line}};
  const auto field = [](const String& text) -> Json {
    return text == "<Empty>" ? Json(nullptr) : Json(text);
  };
  Json order = {{"orderId", CLng(Variant(line.substr(0, first)))},
                {"orderDate", field(line.substr(first + 1, second - first - 1))},
                {"description", field(line.substr(second + 1))}};
  if (order["orderDate"].is_string()) {
    try {
      order["orderDate"] = cli::IsoDate(CDate(Variant(order["orderDate"].get<String>())));
    } catch (const platform::Error&) {
      // Not read back as a date: the text stays as the method wrote it.
    }
  }
  return order;
}

Answer ListOrders(const httplib::Request& request) {
  const Long customerId = PathId(request, 1, "the customer id");
  const String state = request.has_param("state") ? request.get_param_value("state") : "all";
  std::vector given{Given("CustomerId", customerId), Given("istrSeparator", String("\t"))};
  const char* method = "ListOfOrders";
  if (state == "open") {
    method = "ListOpenOrders";
    given.push_back(Given("Delivery", Integer{0}));
  } else if (state == "shipped") {
    method = "ListShippedOrders";
  } else if (state != "all") {
    throw ApiError(kBadRequest, "value", "state must be all, open or shipped, not '" + state + "'");
  }
  MethodAnswer answer = CallOnWorker(method, given);
  Answer reply = Plain(answer, OnZero::Ok);
  Json orders = Json::array();
  if (answer.Status() > 0) {
    const auto lines = answer.Value("ocolQueryResultCol").ObjectAs<Collection>();
    for (Long i = 1; i <= lines->Count(); ++i) orders.push_back(ListedOrder(CStr(lines->Item(i))));
  }
  reply.body["orders"] = std::move(orders);
  return reply;
}

}  // namespace

void AddOrderRoutes(httplib::Server& server) {
  server.Post("/api/orders", JsonRoute(StartOrder));
  server.Get(R"(/api/orders/([^/]+))", JsonRoute(ReadOrder));
  server.Delete(R"(/api/orders/([^/]+))", JsonRoute(DeleteOrder));
  server.Post(R"(/api/orders/([^/]+)/purchase)", JsonRoute(PurchaseOrder));
  server.Post(R"(/api/orders/([^/]+)/basket)", JsonRoute(AddToBasket));
  server.Patch(R"(/api/orders/([^/]+)/basket/([^/]+))", JsonRoute(ChangeQuantity));
  server.Delete(R"(/api/orders/([^/]+)/basket/([^/]+))", JsonRoute(RemoveLine));
  server.Get(R"(/api/customers/([^/]+)/orders)", JsonRoute(ListOrders));
}

}  // namespace brindlewayProj::web
