// StartNewOrder: adds one order for a customer in a transaction and hands back its new key.
#include <brindleway/brindleway.h>
#include "component/method_frame.h"
#include "component/row_changes.h"

namespace brindlewayProj {

// The key is read from the row buffer before Update: the store assigns it at AddNew. A left-out
// iintDelivery goes to CInt untested like any other value, and the missing marker is no
// number, so the call ends on the failure path ("Type mismatch") and nothing is stored.
Integer brindleway::StartNewOrder(String& ReturnMsg, Long& olngOrderId, Long& ilngCustomerId,
                                  Variant& idtmOrderDate, Variant& idtmDeliveryDate,
                                  Variant& iintDelivery, Variant& istrDescription) {
  const String name = "StartNewOrder";
  return component::RunInTransaction(name, ReturnMsg, mWSpace, [&] {
    Deref(mWSpace).BeginTrans();
    return component::AddRowAndCommit(
        name, ReturnMsg, mWSpace, mDBase, "Orders", [&](dao::Recordset& order) {
          order.Collect("CustomerId", Variant(ilngCustomerId));
          if (HasValue(idtmOrderDate)) order.Collect("OrderDate", Variant(CDate(idtmOrderDate)));
          if (HasValue(idtmDeliveryDate)) {
            order.Collect("DeliveryDate", Variant(CDate(idtmDeliveryDate)));
          }
          order.Collect("Delivery", Variant(CInt(iintDelivery)));
          if (HasValue(istrDescription)) {
            order.Collect("Description", Variant(CStr(istrDescription)));
          }
          olngOrderId = CLng(component::FieldValue(order, "OrderId"));
        });
  });
}

Integer brindleway::StartNewOrder(String& ReturnMsg, Long& olngOrderId, Long& ilngCustomerId,
                                  Variant& idtmOrderDate, Variant& idtmDeliveryDate,
                                  Variant& iintDelivery) {
  Variant istrDescription = Variant::Missing();
  return StartNewOrder(ReturnMsg, olngOrderId, ilngCustomerId, idtmOrderDate, idtmDeliveryDate,
                       iintDelivery, istrDescription);
}

Integer brindleway::StartNewOrder(String& ReturnMsg, Long& olngOrderId, Long& ilngCustomerId,
                                  Variant& idtmOrderDate, Variant& idtmDeliveryDate) {
  Variant iintDelivery = Variant::Missing();
  return StartNewOrder(ReturnMsg, olngOrderId, ilngCustomerId, idtmOrderDate, idtmDeliveryDate,
                       iintDelivery);
}

Integer brindleway::StartNewOrder(String& ReturnMsg, Long& olngOrderId, Long& ilngCustomerId,
                                  Variant& idtmOrderDate) {
  Variant idtmDeliveryDate = Variant::Missing();
  return StartNewOrder(ReturnMsg, olngOrderId, ilngCustomerId, idtmOrderDate, idtmDeliveryDate);
}

Integer brindleway::StartNewOrder(String& ReturnMsg, Long& olngOrderId, Long& ilngCustomerId) {
  Variant idtmOrderDate = Variant::Missing();
  return StartNewOrder(ReturnMsg, olngOrderId, ilngCustomerId, idtmOrderDate);
}

}  // namespace brindlewayProj
