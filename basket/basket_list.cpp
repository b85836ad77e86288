// BasketList and GetOrderedProducts: the product names in the basket of one order, into the
// caller's Collection. The twins share one road and differ in their query and their name.
#include <functional>

#include "component/brindleway.h"
#include "component/method_frame.h"

namespace brindlewayProj {

namespace {

// Reads the names of order `orderId` that the query "<start> Where ( [OrderId] = n )<end>"
// selects into `names`: status and message are set from the count before the collection is
// emptied and filled, so that an overflow leaves it untouched and an order without rows keeps
// its old content. A Null name is listed as "<Empty>".
Integer ReadProductNames(const String& methodName, String& ReturnMsg, const String& queryStart,
                         Long orderId, const String& queryEnd,
                         const brindleway::DatabaseRef& database, brindleway::CollectionRef& names,
                         const std::function<void(brindleway::CollectionRef&)>& clearNames) {
  return component::RunUnderFailurePath(methodName, ReturnMsg, [&]() -> Integer {
    const String query = queryStart + component::KeyCondition("OrderId", orderId) + queryEnd;
    const auto recordset = Deref(database).OpenRecordset(query, dao::dbOpenSnapshot);
    dao::Recordset& rows = Deref(recordset);
    const Integer count = component::CountRows(rows);
    component::ReportCount(methodName, ReturnMsg, count);
    if (count == 0) return 0;

    clearNames(names);
    component::ForEachRow(rows, [&] {
      const bool isNull = IsNull(component::FieldValue(rows, "ProductName"));
      Deref(names).Add(isNull ? String("<Empty>")
                              : CStr(component::FieldValue(rows, "ProductName")));
    });
    return count;
  });
}

}  // namespace

Integer brindleway::BasketList(String& ReturnMsg, CollectionRef& ostrProductNameCol,
                               Long& OrderId) {
  return ReadProductNames("BasketList", ReturnMsg, "Select [ProductName] From [BasketList] ",
                          OrderId, " Order By [ProductName] Asc", mDBase, ostrProductNameCol,
                          [this](CollectionRef& names) { ClearCollection(names); });
}

Integer brindleway::GetOrderedProducts(String& ReturnMsg, CollectionRef& ostrProductNameCol,
                                       Long& OrderId) {
  return ReadProductNames(
      "GetOrderedProducts", ReturnMsg, "Select Distinct [ProductName] From [BasketList] ", OrderId,
      "", mDBase, ostrProductNameCol, [this](CollectionRef& names) { ClearCollection(names); });
}

}  // namespace brindlewayProj
