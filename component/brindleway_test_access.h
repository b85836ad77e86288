// Test-only window on the private methods and members of brindleway; include it from test
// files only.
#pragma once

#include <brindleway/brindleway.h>

namespace brindlewayProj {

struct BrindlewayTestAccess {
  static String ReadDbPath(brindleway& object) { return object.ReadDbPath(); }
  static String BuildWhere(brindleway& object, String& sField, Variant& vValue, bool& bConnect,
                           Variant& vConnector, Variant& vCompOp) {
    return object.BuildWhere(sField, vValue, bConnect, vConnector, vCompOp);
  }
  static const String& DbFileName(const brindleway& object) { return object.mDbFileName; }
  static const brindleway::DatabaseRef& Database(const brindleway& object) { return object.mDBase; }
  static const brindleway::WorkspaceRef& Workspace(const brindleway& object) {
    return object.mWSpace;
  }
};

}  // namespace brindlewayProj
