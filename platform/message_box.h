// The runtime's message box, with a hook so that hosts and tests decide what showing one means.
#pragma once

#include <functional>

#include "platform/types.h"

namespace brindlewayProj::platform {

inline constexpr Integer vbOKOnly = 0;
inline constexpr Integer vbExclamation = 48;
inline constexpr Integer vbOK = 1;

// Shows `prompt` and answers the button pressed.
using MessageBoxHandler = std::function<Integer(const String& prompt, Integer flags)>;

// Replaces the handler; an empty handler restores the default, which writes the prompt to
// standard error and answers OK at once, since no user may be present.
void SetMessageBoxHandler(MessageBoxHandler handler);

Integer MsgBox(const String& prompt, Integer flags = vbOKOnly);

}  // namespace brindlewayProj::platform
