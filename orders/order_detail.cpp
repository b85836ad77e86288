// OrderDetail: reads one order, with its customer's name, into out-parameters.
#include <brindleway/brindleway.h>
#include "component/method_frame.h"

namespace brindlewayProj {

// Each out-parameter is written only when its field has a value; texts come back as stored.
// With several rows the one with the newest OrderDate is read.
Integer brindleway::OrderDetail(String& ReturnMsg, Long& olngCustomerId, String& ostrFirstName,
                                String& ostrLastName, Date& odtmOrderDate, Date& odtmDeliveryDate,
                                Integer& ointDelivery, String& ostrDescription, Long& OrderId) {
  const String name = "OrderDetail";
  return component::RunUnderFailurePath(name, ReturnMsg, [&] {
    String query =
        "Select [CustomerId], [FirstName], [LastName], [OrderDate], [DeliveryDate], [Delivery], "
        "[Description] From [OrdersWithNames] " +
        component::KeyCondition("OrderId", OrderId) + " Order By [OrderDate] Desc";
    return component::ReadFirstRowOf(
        name, ReturnMsg, Deref(mDBase), query, [&](const dao::Recordset& order) {
          component::ReadFieldIfValue(order, "CustomerId", olngCustomerId, CLng);
          component::ReadFieldIfValue(order, "FirstName", ostrFirstName, CStr);
          component::ReadFieldIfValue(order, "LastName", ostrLastName, CStr);
          component::ReadFieldIfValue(order, "OrderDate", odtmOrderDate, CDate);
          component::ReadFieldIfValue(order, "DeliveryDate", odtmDeliveryDate, CDate);
          component::ReadFieldIfValue(order, "Delivery", ointDelivery, CInt);
          component::ReadFieldIfValue(order, "Description", ostrDescription, CStr);
        });
  });
}

}  // namespace brindlewayProj
