// The runtime's message box; hosts and tests decide what showing one means through the hook
// in <brindleway/hooks.h>.
#pragma once

#include <brindleway/hooks.h>

namespace brindlewayProj::platform {

inline constexpr Integer vbOKOnly = 0;
inline constexpr Integer vbExclamation = 48;
inline constexpr Integer vbOK = 1;

// Shows `prompt` through the installed handler and answers the button pressed.
Integer MsgBox(const String& prompt, Integer flags = vbOKOnly);

}  // namespace brindlewayProj::platform
