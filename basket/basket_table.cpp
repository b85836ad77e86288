// BasketTable: hands the caller an open snapshot of an order's basket, standing on its first row.
#include <brindleway/brindleway.h>
#include "component/method_frame.h"

namespace brindlewayProj {

// The new recordset replaces what orsQueryResult held as soon as it is open, also when it has
// no rows or the count fails; the caller owns it from then on.
Integer brindleway::BasketTable(String& ReturnMsg, RecordsetRef& orsQueryResult, Long& OrderId) {
  const String name = "BasketTable";
  return component::RunUnderFailurePath(name, ReturnMsg, [&] {
    String query =
        "Select [ProductName], [Vendor], [ProductPrice], [Quantity], [Extended Price] From "
        "[BasketList] " +
        component::KeyCondition("OrderId", OrderId);
    return component::OpenCountAndReport(name, ReturnMsg, Deref(mDBase), query, orsQueryResult);
  });
}

}  // namespace brindlewayProj
