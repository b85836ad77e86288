// A client of the C++ API: connects to the store named on the command line, opens an order,
// puts a product in its basket and lists it. Prints the version it was compiled with, then
// "ok"; any other outcome fails.
#include <iostream>

#include <brindleway/brindleway.h>

using namespace brindlewayProj;

int main(int argc, char** argv) {
  if (argc != 2) return 2;  // usage: sale STORE
  // The store beside the library does not exist here: answer the box of the failed
  // connection at creation without showing it.
  platform::SetMessageBoxHandler([](const String&, Integer) { return Integer{1}; });
  brindleway shop;
  String msg;
  brindleway::WorkspaceRef workspace;
  brindleway::DatabaseRef database;
  Variant file = argv[1];
  Long order = 0, customer = 1, product = 2, quantity = 3;
  Variant orderDate = DateSerial(2026, 11, 22), deliveryDate, delivery = Integer{0},
          description = " Boxed \"gift\" ";
  auto names = std::make_shared<Collection>();
  // The calls in turn, up to the first that fails, which tells its own name in `msg`.
  const bool sold = shop.DbConnect(msg, workspace, database, file) == 0 &&
                    shop.StartNewOrder(msg, order, customer, orderDate, deliveryDate, delivery,
                                       description) == 0 &&
                    CStr(description) == "Boxed \"gift\"" &&
                    shop.ProductToBuy(msg, order, product, quantity) == 0 &&
                    shop.BasketList(msg, names, order) == 1 && names->Count() == 1;
  if (!sold) {
    std::cerr << "sale: failed after " << msg << '\n';
    return 1;
  }
  std::cout << BRINDLEWAY_VERSION_STRING << "\nok\n";
  return 0;
}
