// BuyAnOrder: writes an order's delivery date and delivery state in a transaction.
#include <brindleway/brindleway.h>
#include "component/method_frame.h"
#include "component/row_changes.h"

namespace brindlewayProj {

// The typed parameters go to HasValue as references to the caller's variables: a Date of day
// number 0 keeps the stored DeliveryDate, while Delivery, an Integer, is written on every call.
Integer brindleway::BuyAnOrder(String& ReturnMsg, Long& OrderId, Date& idtmDeliveryDate,
                               Integer& iintDelivery) {
  const String name = "BuyAnOrder";
  return component::RunInTransaction(name, ReturnMsg, mWSpace, [&] {
    Deref(mWSpace).BeginTrans();
    String query = "Select * From [Orders] " + component::KeyCondition("OrderId", OrderId);
    return component::EditFirstRowAndCommit(
        name, ReturnMsg, mWSpace, mDBase, query, [&](dao::Recordset& order) {
          Variant deliveryDate = Variant::ByRef(idtmDeliveryDate);
          if (HasValue(deliveryDate)) order.Collect("DeliveryDate", Variant(idtmDeliveryDate));
          Variant delivery = Variant::ByRef(iintDelivery);
          if (HasValue(delivery)) order.Collect("Delivery", Variant(iintDelivery));
        });
  });
}

}  // namespace brindlewayProj
