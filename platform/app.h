// The runtime's App object: where the component was loaded from and under which name.
#pragma once

#include "platform/types.h"

namespace brindlewayProj::platform {

class App {
 public:
  // The folder of brindlewayProj.so as the dynamic loader reports it, without a closing
  // separator, unless SetPath replaced it.
  static String Path();
  // "brindlewayProj": the component file's name without its extension.
  static String EXEName();
  // Replaces the folder that Path answers (for hosts and tests); an empty text restores it.
  static void SetPath(const String& path);
};

}  // namespace brindlewayProj::platform
