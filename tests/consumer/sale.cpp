// A client of the C++ API: connects to the store named on the command line, opens an order,
// puts a product in its basket and lists it. Prints the version it was compiled with, then
// "ok"; any other outcome fails.
#include <iostream>

#include <brindleway/brindleway.h>

using namespace brindlewayProj;

namespace {

bool Check(bool condition, const String& what, const String& message) {
  if (!condition) std::cerr << "sale: " << what << " failed: " << message << '\n';
  return condition;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: sale STORE\n";
    return 2;
  }
  // The store beside the library does not exist here: answer the box of the failed
  // connection at creation without showing it.
  platform::SetMessageBoxHandler([](const String&, Integer) { return Integer{1}; });
  brindleway shop;
  String msg;
  brindleway::WorkspaceRef workspace;
  brindleway::DatabaseRef database;
  Variant file = argv[1];
  if (!Check(shop.DbConnect(msg, workspace, database, file) == 0, "DbConnect", msg)) return 1;

  Long order = 0, customer = 1;
  Variant orderDate = DateSerial(2026, 11, 22), deliveryDate, delivery = Integer{0},
          description = " Boxed \"gift\" ";
  if (!Check(shop.StartNewOrder(msg, order, customer, orderDate, deliveryDate, delivery,
                                description) == 0 &&
                 CStr(description) == "Boxed \"gift\"",
             "StartNewOrder", msg))
    return 1;
  Long product = 2, quantity = 3;
  if (!Check(shop.ProductToBuy(msg, order, product, quantity) == 0, "ProductToBuy", msg)) return 1;
  auto names = std::make_shared<Collection>();
  if (!Check(shop.BasketList(msg, names, order) == 1 && names->Count() == 1, "BasketList", msg))
    return 1;
  std::cout << BRINDLEWAY_VERSION_STRING << "\nok\n";
  return 0;
}
