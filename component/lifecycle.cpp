// Creation and destruction of a brindleway object: it connects itself to the store named by
// its ini file (or to brindleway.mdb beside the component) and lets go of it at the end. A
// failed connection or disconnection shows a message box; creation goes on regardless.
#include <brindleway/brindleway.h>
#include <brindleway/hooks.h>
#include "platform/message_box.h"
#include "platform/paths.h"
#include "store/store_name.h"

namespace brindlewayProj {

brindleway::brindleway() { Class_Initialize(); }

brindleway::~brindleway() { Class_Terminate(); }

// No failure path: a failure while the ini file or the path is read leaves the constructor.
void brindleway::Class_Initialize() {
  mWSpace = nullptr;
  mDBase = nullptr;
  mDbFileName = ReadDbPath();
  const String appPath = platform::App::Path();
  // The default is not tested here: whether it exists shows when it is opened. Whether a
  // database server answers shows there too.
  if (!store::IsConnectionUri(mDbFileName) && platform::Dir(mDbFileName, 0).empty()) {
    mDbFileName = appPath + "\\brindleway.mdb";
  }

  WorkspaceRef workspace;
  DatabaseRef database;
  String message;
  // By reference, so that the member loses its surrounding blanks on the way.
  Variant fileName = Variant::ByRef(mDbFileName);
  const Integer status = DbConnect(message, workspace, database, fileName);
  workspace = nullptr;
  database = nullptr;
  if (status < 0) platform::MsgBox(message, platform::vbOKOnly);
}

void brindleway::Class_Terminate() {
  String message;
  if (DbDisconnect(message) < 0) platform::MsgBox(message, platform::vbExclamation);
}

}  // namespace brindlewayProj
