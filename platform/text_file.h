// Sequential reading of a text file, one line at a time, with an end-of-file test before
// each read, as the runtime's Line Input does it.
#pragma once

#include <fstream>

#include <brindleway/types.h>

namespace brindlewayProj::platform {

class TextFile {
 public:
  // Opens the file for input; raises 53 "File not found" or 75 "Path/File access error".
  explicit TextFile(const String& path);
  bool Eof();
  // The next line without its line end (LF, CR LF or CR); raises 62 past the end.
  String LineInput();

 private:
  std::ifstream stream_;
};

}  // namespace brindlewayProj::platform
