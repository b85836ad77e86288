// ProductToBuy: adds one basket row in a transaction, with no look at the rows already there.
#include <brindleway/brindleway.h>
#include "component/method_frame.h"
#include "component/row_changes.h"

namespace brindlewayProj {

Integer brindleway::ProductToBuy(String& ReturnMsg, Long& ilngOrderId, Long& ilngProductId,
                                 Long& ilngQuantity) {
  const String name = "ProductToBuy";
  return component::RunInTransaction(name, ReturnMsg, mWSpace, [&] {
    Deref(mWSpace).BeginTrans();
    return component::AddRowAndCommit(name, ReturnMsg, mWSpace, mDBase, "OrderBasket",
                                      [&](dao::Recordset& row) {
                                        row.Collect("OrderId", Variant(ilngOrderId));
                                        row.Collect("ProductId", Variant(ilngProductId));
                                        row.Collect("Quantity", Variant(ilngQuantity));
                                      });
  });
}

}  // namespace brindlewayProj
