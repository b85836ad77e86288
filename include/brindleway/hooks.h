// What hosts and tests may change of the runtime around the component: what showing a
// message box means, the folder the component counts as its own, and the regional settings.
#pragma once

#include <functional>

#include <brindleway/export.h>
#include <brindleway/types.h>

namespace brindlewayProj::platform {

// Shows `prompt` and answers the button pressed (1 is OK).
using MessageBoxHandler = std::function<Integer(const String& prompt, Integer flags)>;

// Replaces the handler for the whole process; an empty handler restores the default, which
// writes the prompt to standard error and answers OK at once, since no user may be present.
BRINDLEWAY_API void SetMessageBoxHandler(MessageBoxHandler handler);

// The runtime's App object: where the component was loaded from and under which name.
class BRINDLEWAY_API App {
 public:
  // The folder of brindlewayProj.so as the dynamic loader reports it, without a closing
  // separator, unless SetPath replaced it.
  static String Path();
  // "brindlewayProj": the component file's name without its extension.
  static String EXEName();
  // Replaces the folder that Path answers (for hosts and tests); an empty text restores it.
  static void SetPath(const String& path);
};

// Chooses the locale of date texts by name ("de_DE", "en_US.UTF-8"); an empty name goes back
// to the process locale (LC_ALL, LC_TIME, LANG; unset, "C" and "POSIX" mean US English).
BRINDLEWAY_API void SetRegionalLocale(const String& name);

}  // namespace brindlewayProj::platform
