// Sequential reading of a text file, one line at a time, with an end-of-file test before
// each read, as the runtime's Line Input does it.
#pragma once

#include <cstdio>
#include <memory>

#include <brindleway/types.h>

namespace brindlewayProj::platform {

class TextFile {
 public:
  // Opens the file for input; raises 53 "File not found" or 75 "Path/File access error".
  explicit TextFile(const String& path);
  // Test-only: reads from a stream that is already open, and closes it at the end.
  static TextFile FromStreamForTesting(std::FILE* stream) { return TextFile(stream); }

  // True at the end of the file. A read that fails is no end: it raises 75, as LineInput does.
  bool Eof();
  // The next line without its line end (LF, CR LF or CR); raises 62 past the end.
  String LineInput();

 private:
  struct Closer {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
  };
  explicit TextFile(std::FILE* stream) : file_(stream) {}
  // The next byte, or EOF at the end of the file; raises 75 when the read fails.
  int Next();

  std::unique_ptr<std::FILE, Closer> file_;
};

}  // namespace brindlewayProj::platform
