// Test-only: one call of each store method of the component, with the ids of a test's own
// store, for the suites that run every method the same way (faults, growth, contention). Beside
// the ids the calls use fixed values: a new order of 2026-11-02, two of `otherProduct`, a
// quantity of 5, a shipment of 2026-11-09.
#pragma once

#include <functional>
#include <tuple>
#include <vector>

#include <brindleway/brindleway.h>

namespace brindlewayProj::testing {

// The rows the calls work on.
struct SaleIds {
  Long customer;       // whose orders are listed, and who starts a new order
  Long order;          // read, bought, changed and added to
  Long product;        // in `order`'s basket: its quantity changed, looked up, removed
  Long otherProduct;   // bought into `order`
  String productName;  // the name of `product`
  Long orderToEmpty;   // RemoveFromBasket takes `product` out of it
  Long orderToDelete;
};

struct MethodCall {
  const char* name;
  std::function<Integer(brindleway&, String&)> call;
};

namespace method_calls {
// A value as each call gets it: a copy, and a fresh collection rather than a shared one, so
// that what one call writes into its arguments reaches no later call.
template <class T>
T Fresh(const T& value) {
  return value;
}
inline brindleway::CollectionRef Fresh(const brindleway::CollectionRef&) {
  return std::make_shared<Collection>();
}
template <class Method, class... Args>
MethodCall Make(const char* name, Method method, Args... args) {
  return {name, [=](brindleway& shop, String& msg) {
            auto copies = std::tuple(Fresh(args)...);
            return std::apply([&](auto&... a) { return method(shop, msg, a...); }, copies);
          }};
}
}  // namespace method_calls

// The four methods with a transaction, then the two that delete, then the nine readers; the
// first `count` of them.
inline std::vector<MethodCall> StoreMethodCalls(const SaleIds& ids, std::size_t count = 15) {
#define METHOD(name) #name, [](brindleway & shop, auto&... a) { return shop.name(a...); }
  using method_calls::Make;
  const brindleway::CollectionRef list;
  const Long order = ids.order, product = ids.product, customer = ids.customer;
  const String separator = "; ";
  std::vector<MethodCall> calls{
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
#undef METHOD
  calls.resize(std::min(count, calls.size()));
  return calls;
}

}  // namespace brindlewayProj::testing
