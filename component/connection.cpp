// DbConnect and DbDisconnect: binding the object's workspace and database references, and
// giving them up again. Neither closes anything; objects go with their last reference.
#include <brindleway/brindleway.h>
#include "component/method_frame.h"

namespace brindlewayProj {

Integer brindleway::DbConnect(String& ReturnMsg, WorkspaceRef& WSpace, DatabaseRef& DBase,
                              Variant& sDbFileName) {
  return component::RunUnderFailurePath("DbConnect", ReturnMsg, [&]() -> Integer {
    if (WSpace == nullptr) {
      mWSpace = dao::DBEngine().Workspaces(Integer{0});
      WSpace = mWSpace;
    } else {
      mWSpace = WSpace;
    }

    // A given path wins over a given database; without either the file of creation opens.
    if (HasValue(sDbFileName)) {
      mDBase = Deref(mWSpace).OpenDatabase(CStr(sDbFileName));
      DBase = mDBase;
    } else if (DBase == nullptr) {
      mDBase = Deref(mWSpace).OpenDatabase(mDbFileName);
      DBase = mDBase;
    } else {
      mDBase = DBase;
    }

    ReturnMsg = BuildReturnMsg("DbConnect", CompInfo, "Success");
    return 0;
  });
}

Integer brindleway::DbConnect(String& ReturnMsg, WorkspaceRef& WSpace, DatabaseRef& DBase) {
  Variant sDbFileName = Variant::Missing();
  return DbConnect(ReturnMsg, WSpace, DBase, sDbFileName);
}

Integer brindleway::DbDisconnect(String& ReturnMsg) {
  return component::RunUnderFailurePath("DbDisconnect", ReturnMsg, [&]() -> Integer {
    mWSpace = nullptr;
    mDBase = nullptr;
    ReturnMsg = BuildReturnMsg("DbDisconnect", CompInfo, "Success");
    return 0;
  });
}

}  // namespace brindlewayProj
