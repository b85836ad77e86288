// Test-only: one call of each store method of the component, with the ids of a test's own
// store, for the suites that run every method the same way (faults, growth, contention).
#pragma once

#include <functional>
#include <vector>

#include <brindleway/brindleway.h>

namespace brindlewayProj::testing {

// The rows the calls work on.
struct SaleIds {
  Long customer;        // whose orders are listed, and who starts a new order
  Long order;           // read, bought, changed and added to
  Long product;         // in `order`'s basket: its quantity changed, looked up, removed
  Long otherProduct;    // bought into `order`
  String productName;   // the name of `product`
  Long orderToEmpty;    // RemoveFromBasket takes `product` out of it
  Long orderToDelete;
};

struct MethodCall {
  const char* name;
  std::function<Integer(brindleway&, String&)> call;
};

// The four methods with a transaction, then the two that delete, then the nine readers.
std::vector<MethodCall> StoreMethodCalls(const SaleIds& ids);
// The first four of StoreMethodCalls.
std::vector<MethodCall> TransactionMethodCalls(const SaleIds& ids);

}  // namespace brindlewayProj::testing
