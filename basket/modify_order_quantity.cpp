// ModifyOrderQuantity: changes the quantity of the first basket row of an order and product.
#include <brindleway/brindleway.h>
#include "component/method_frame.h"
#include "component/row_changes.h"

namespace brindlewayProj {

// A quantity that HasValue refuses (left out, Null, Empty, blanks) changes nothing, yet the row
// is still edited, updated and committed. A text quantity comes back trimmed in the caller's
// Variant; a fraction is rounded half to even.
Integer brindleway::ModifyOrderQuantity(String& ReturnMsg, Long& OrderId, Long& ProductId,
                                        Variant& ilngQuantity) {
  const String name = "ModifyOrderQuantity";
  return component::RunInTransaction(name, ReturnMsg, mWSpace, [&] {
    Deref(mWSpace).BeginTrans();
    String query = "Select * From [OrderBasket] " +
                   component::KeyCondition("OrderId", OrderId, "ProductId", ProductId);
    return component::EditFirstRowAndCommit(
        name, ReturnMsg, mWSpace, mDBase, query, [&](dao::Recordset& row) {
          if (HasValue(ilngQuantity)) row.Collect("Quantity", Variant(CLng(ilngQuantity)));
        });
  });
}

Integer brindleway::ModifyOrderQuantity(String& ReturnMsg, Long& OrderId, Long& ProductId) {
  Variant ilngQuantity = Variant::Missing();
  return ModifyOrderQuantity(ReturnMsg, OrderId, ProductId, ilngQuantity);
}

}  // namespace brindlewayProj
