// LookupOrderedProduct and QuantityOrdered: one basket row's values read into out-parameters.
#include <brindleway/brindleway.h>
#include "component/method_frame.h"

namespace brindlewayProj {

// ProductName goes into the query between double quotes as it is: a double quote inside it
// changes the query text, which the store then runs or refuses.
Integer brindleway::LookupOrderedProduct(String& ReturnMsg, String& ostrProductName,
                                         Long& olngQuantity, String& ProductName) {
  const String name = "LookupOrderedProduct";
  return component::RunUnderFailurePath(name, ReturnMsg, [&] {
    String query =
        "Select Distinct [ProductName], [Quantity] From [BasketList] Where ( "
        "[ProductName] = \"" +
        ProductName + "\" )";
    return component::ReadFirstRowOf(
        name, ReturnMsg, Deref(mDBase), query, [&](const dao::Recordset& row) {
          component::ReadFieldIfValue(row, "ProductName", ostrProductName, CStr);
          component::ReadFieldIfValue(row, "Quantity", olngQuantity, CLng);
        });
  });
}

Integer brindleway::QuantityOrdered(String& ReturnMsg, Long& olngQuantity, Long& OrderId,
                                    Long& ProductId) {
  const String name = "QuantityOrdered";
  return component::RunUnderFailurePath(name, ReturnMsg, [&] {
    String query = "Select Distinct [Quantity] From [OrderBasket] " +
                   component::KeyCondition("OrderId", OrderId, "ProductId", ProductId);
    return component::ReadFirstRowOf(
        name, ReturnMsg, Deref(mDBase), query, [&](const dao::Recordset& row) {
          component::ReadFieldIfValue(row, "Quantity", olngQuantity, CLng);
        });
  });
}

}  // namespace brindlewayProj
