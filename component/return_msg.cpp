// Message texts of ReturnMsg, and the component's BuildReturnMsg over them.
#include "component/return_msg.h"

#include <brindleway/brindleway.h>

namespace brindlewayProj::component {

namespace {
const char* LevelTag(Byte level) {
  switch (level) {
    case brindleway::CompError: return "<CompError: ";
    case brindleway::CompWarning: return "<CompWarning: ";
    case brindleway::CompInfo: return "<CompInfo: ";
    default: return "";
  }
}
}  // namespace

String ComposeReturnMsg(const String& methodName, Byte level, const Variant& text) {
  String message = LevelTag(level);
  message += "brindleway.";
  message += methodName;
  message += "> ";
  message += IsMissing(text) ? platform::Err().Description : JoinText(text);
  return message;
}

}  // namespace brindlewayProj::component

namespace brindlewayProj {

String brindleway::BuildReturnMsg(const String& sMethodName, Byte bLevel, const Variant& vText) {
  return component::ComposeReturnMsg(sMethodName, bLevel, vText);
}

}  // namespace brindlewayProj
