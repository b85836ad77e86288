// BasketList and GetOrderedProducts: the product names in the basket of one order, into the
// caller's Collection. The twins share one road and differ in their query and their name.
#include <brindleway/brindleway.h>
#include "component/method_frame.h"

namespace brindlewayProj {

namespace {

// A row's product name; a Null name is listed as "<Empty>", an empty one as it is.
String ProductNameOf(const dao::Recordset& rows) {
  const Variant name = component::FieldValue(rows, "ProductName");
  return IsNull(name) ? String("<Empty>") : CStr(name);
}

}  // namespace

Integer brindleway::BasketList(String& ReturnMsg, CollectionRef& ostrProductNameCol,
                               Long& OrderId) {
  const String query = "Select [ProductName] From [BasketList] " +
                       component::KeyCondition("OrderId", OrderId) + " Order By [ProductName] Asc";
  return component::ReadRowsInto(
      "BasketList", ReturnMsg, mDBase, query, ostrProductNameCol,
      [&] { ClearCollection(ostrProductNameCol); }, ProductNameOf);
}

Integer brindleway::GetOrderedProducts(String& ReturnMsg, CollectionRef& ostrProductNameCol,
                                       Long& OrderId) {
  const String query = "Select Distinct [ProductName] From [BasketList] " +
                       component::KeyCondition("OrderId", OrderId);
  return component::ReadRowsInto(
      "GetOrderedProducts", ReturnMsg, mDBase, query, ostrProductNameCol,
      [&] { ClearCollection(ostrProductNameCol); }, ProductNameOf);
}

}  // namespace brindlewayProj
