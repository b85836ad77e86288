// One call of each store method, with fixed values beside the test's ids: a new order of
// 2026-11-02, two of `otherProduct`, a quantity of 5, a shipment of 2026-11-09.
#include "tests/support/method_calls.h"

#include <tuple>

namespace brindlewayProj::testing {
namespace {

// A value as each call gets it: a copy, and a fresh collection rather than a shared one.
template <class T>
T Fresh(const T& value) {
  return value;
}
brindleway::CollectionRef Fresh(const brindleway::CollectionRef&) {
  return std::make_shared<Collection>();
}

// Calls `method` with fresh copies of `args`, so that what one call writes into them reaches
// no later call.
template <class Method, class... Args>
MethodCall Make(const char* name, Method method, Args... args) {
  return {name, [=](brindleway& shop, String& msg) {
            auto copies = std::tuple(Fresh(args)...);
            return std::apply([&](auto&... a) { return method(shop, msg, a...); }, copies);
          }};
}

#define METHOD(name) #name, [](brindleway & shop, auto&... a) { return shop.name(a...); }

}  // namespace

std::vector<MethodCall> StoreMethodCalls(const SaleIds& ids) {
  const brindleway::CollectionRef list;
  const Long order = ids.order, product = ids.product, customer = ids.customer;
  const String separator = "; ";
  return {
      Make(METHOD(StartNewOrder), Long(0), customer, Variant(DateSerial(2026, 11, 2)), Variant(),
           Variant(Integer(0)), Variant("New")),
      Make(METHOD(ProductToBuy), order, ids.otherProduct, Long(2)),
      Make(METHOD(ModifyOrderQuantity), order, product, Variant(Long(5))),
      Make(METHOD(BuyAnOrder), order, DateSerial(2026, 11, 9), Integer(1)),
      Make(METHOD(RemoveFromBasket), ids.orderToEmpty, product),
      Make(METHOD(DeleteAnOrder), ids.orderToDelete),
      Make(METHOD(BasketList), list, order),
      Make(METHOD(GetOrderedProducts), list, order),
      Make(METHOD(BasketTable), std::shared_ptr<dao::Recordset>(), order),
      Make(METHOD(LookupOrderedProduct), String(), Long(0), ids.productName),
      Make(METHOD(QuantityOrdered), Long(0), order, product),
      Make(METHOD(ListOfOrders), list, separator, customer),
      Make(METHOD(ListOpenOrders), list, separator, customer, Integer(0)),
      Make(METHOD(ListShippedOrders), list, separator, customer),
      Make(METHOD(OrderDetail), Long(0), String(), String(), Date(), Date(), Integer(0), String(),
           order),
  };
}

std::vector<MethodCall> TransactionMethodCalls(const SaleIds& ids) {
  auto calls = StoreMethodCalls(ids);
  calls.resize(4);
  return calls;
}

}  // namespace brindlewayProj::testing
