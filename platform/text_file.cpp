// Line-by-line reading of a text file with LF, CR LF or CR line ends. Reads through stdio so
// that a failed read (ferror) is told apart from the end of the file (feof).
#include "platform/text_file.h"

#include <filesystem>

#include <brindleway/error.h>
#include "platform/paths.h"

namespace brindlewayProj::platform {

TextFile::TextFile(const String& path) {
  if (path.empty() || path.find('\0') != String::npos) Raise(errFileNotFound);
  const std::filesystem::path host = ToHostPath(path);
  std::error_code error;
  const auto status = std::filesystem::status(host, error);
  if (!std::filesystem::exists(status)) Raise(errFileNotFound);
  if (!std::filesystem::is_regular_file(status)) Raise(errPathFileAccess);
  // "e": the descriptor is not inherited by programs the host starts meanwhile.
  file_.reset(std::fopen(host.c_str(), "rbe"));
  if (!file_) Raise(errPathFileAccess);
}

int TextFile::Next() {
  const int c = std::getc(file_.get());
  if (c == EOF && std::ferror(file_.get())) Raise(errPathFileAccess);
  return c;
}

bool TextFile::Eof() {
  const int c = Next();
  if (c == EOF) return true;
  std::ungetc(c, file_.get());
  return false;
}

String TextFile::LineInput() {
  if (Eof()) Raise(errInputPastEndOfFile);
  String line;
  for (int c = Next(); c != EOF; c = Next()) {
    if (c == '\n') break;
    if (c == '\r') {
      const int next = Next();
      if (next != '\n' && next != EOF) std::ungetc(next, file_.get());
      break;
    }
    line.push_back(static_cast<char>(c));
  }
  return line;
}

}  // namespace brindlewayProj::platform
