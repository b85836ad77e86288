// RemoveFromBasket: deletes every basket row of an order and product by one statement.
#include <brindleway/brindleway.h>
#include "component/method_frame.h"
#include "component/row_changes.h"

namespace brindlewayProj {

Integer brindleway::RemoveFromBasket(String& ReturnMsg, Long& OrderId, Long& ProductId) {
  const String name = "RemoveFromBasket";
  return component::RunUnderFailurePath(name, ReturnMsg, [&] {
    return component::DeleteRows(
        name, ReturnMsg, mDBase,
        "Delete From [OrderBasket] " +
            component::KeyCondition("OrderId", OrderId, "ProductId", ProductId));
  });
}

}  // namespace brindlewayProj
