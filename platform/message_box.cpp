// The message box: a replaceable handler, by default a line on standard error.
#include "platform/message_box.h"

#include <iostream>
#include <mutex>

namespace brindlewayProj::platform {
namespace {

std::mutex handlerMutex;
MessageBoxHandler currentHandler;  // guarded by handlerMutex; empty means the default

Integer ShowOnStandardError(const String& prompt, Integer /*flags*/) {
  std::cerr << prompt << std::endl;
  return vbOK;
}

}  // namespace

void SetMessageBoxHandler(MessageBoxHandler handler) {
  std::lock_guard lock(handlerMutex);
  currentHandler = std::move(handler);
}

Integer MsgBox(const String& prompt, Integer flags) {
  MessageBoxHandler handler;
  {
    std::lock_guard lock(handlerMutex);
    handler = currentHandler;
  }
  // Called outside the lock: a handler may block until its user answers.
  return handler ? handler(prompt, flags) : ShowOnStandardError(prompt, flags);
}

}  // namespace brindlewayProj::platform
