// One call of each store method, with fixed values beside the test's ids: a new order of
// 2026-11-02, two of `otherProduct`, a quantity of 5, a shipment of 2026-11-09.
#include "tests/support/method_calls.h"

namespace brindlewayProj::testing {

std::vector<MethodCall> StoreMethodCalls(const SaleIds& ids) {
  auto list = [] { return std::make_shared<Collection>(); };
  return {
      {"StartNewOrder",
       [=](brindleway& shop, String& msg) {
         Long order = 0, customer = ids.customer;
         Variant date = DateSerial(2026, 11, 2), none, open = Integer(0), text("New");
         return shop.StartNewOrder(msg, order, customer, date, none, open, text);
       }},
      {"ProductToBuy",
       [=](brindleway& shop, String& msg) {
         Long order = ids.order, product = ids.otherProduct, two = 2;
         return shop.ProductToBuy(msg, order, product, two);
       }},
      {"ModifyOrderQuantity",
       [=](brindleway& shop, String& msg) {
         Long order = ids.order, product = ids.product;
         Variant five = Long(5);
         return shop.ModifyOrderQuantity(msg, order, product, five);
       }},
      {"BuyAnOrder",
       [=](brindleway& shop, String& msg) {
         Long order = ids.order;
         Date delivered = DateSerial(2026, 11, 9);
         Integer shipped = 1;
         return shop.BuyAnOrder(msg, order, delivered, shipped);
       }},
      {"RemoveFromBasket",
       [=](brindleway& shop, String& msg) {
         Long order = ids.orderToEmpty, product = ids.product;
         return shop.RemoveFromBasket(msg, order, product);
       }},
      {"DeleteAnOrder",
       [=](brindleway& shop, String& msg) {
         Long order = ids.orderToDelete;
         return shop.DeleteAnOrder(msg, order);
       }},
      {"BasketList",
       [=](brindleway& shop, String& msg) {
         Long order = ids.order;
         auto names = list();
         return shop.BasketList(msg, names, order);
       }},
      {"GetOrderedProducts",
       [=](brindleway& shop, String& msg) {
         Long order = ids.order;
         auto names = list();
         return shop.GetOrderedProducts(msg, names, order);
       }},
      {"BasketTable",
       [=](brindleway& shop, String& msg) {
         Long order = ids.order;
         std::shared_ptr<dao::Recordset> rows;
         return shop.BasketTable(msg, rows, order);
       }},
      {"LookupOrderedProduct",
       [=](brindleway& shop, String& msg) {
         String name, wanted = ids.productName;
         Long quantity = 0;
         return shop.LookupOrderedProduct(msg, name, quantity, wanted);
       }},
      {"QuantityOrdered",
       [=](brindleway& shop, String& msg) {
         Long quantity = 0, order = ids.order, product = ids.product;
         return shop.QuantityOrdered(msg, quantity, order, product);
       }},
      {"ListOfOrders",
       [=](brindleway& shop, String& msg) {
         String separator = "; ";
         Long customer = ids.customer;
         auto lines = list();
         return shop.ListOfOrders(msg, lines, separator, customer);
       }},
      {"ListOpenOrders",
       [=](brindleway& shop, String& msg) {
         String separator = "; ";
         Long customer = ids.customer;
         Integer ignored = 0;
         auto lines = list();
         return shop.ListOpenOrders(msg, lines, separator, customer, ignored);
       }},
      {"ListShippedOrders",
       [=](brindleway& shop, String& msg) {
         String separator = "; ";
         Long customer = ids.customer;
         auto lines = list();
         return shop.ListShippedOrders(msg, lines, separator, customer);
       }},
      {"OrderDetail",
       [=](brindleway& shop, String& msg) {
         Long customer = 0, order = ids.order;
         String first, last, description;
         Date ordered, delivered;
         Integer delivery = 0;
         return shop.OrderDetail(msg, customer, first, last, ordered, delivered, delivery,
                                 description, order);
       }},
  };
}

std::vector<MethodCall> TransactionMethodCalls(const SaleIds& ids) {
  auto calls = StoreMethodCalls(ids);
  calls.resize(4);
  return calls;
}

}  // namespace brindlewayProj::testing
