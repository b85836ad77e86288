// DeleteAnOrder: deletes one order by one statement; the store decides about its basket rows.
#include <brindleway/brindleway.h>
#include "component/method_frame.h"
#include "component/row_changes.h"

namespace brindlewayProj {

Integer brindleway::DeleteAnOrder(String& ReturnMsg, Long& OrderId) {
  const String name = "DeleteAnOrder";
  return component::RunUnderFailurePath(name, ReturnMsg, [&] {
    return component::DeleteRows(
        name, ReturnMsg, mDBase,
        "Delete From [Orders] " + component::KeyCondition("OrderId", OrderId));
  });
}

}  // namespace brindlewayProj
