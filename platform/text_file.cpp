// Line-by-line reading of a text file with LF, CR LF or CR line ends.
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
  stream_.open(host, std::ios::in | std::ios::binary);
  if (!stream_.is_open()) Raise(errPathFileAccess);
}

bool TextFile::Eof() { return stream_.peek() == std::ifstream::traits_type::eof(); }

String TextFile::LineInput() {
  using Traits = std::ifstream::traits_type;
  if (Eof()) Raise(errInputPastEndOfFile);
  String line;
  for (auto c = stream_.get(); c != Traits::eof(); c = stream_.get()) {
    if (c == '\n') break;
    if (c == '\r') {
      if (stream_.peek() == '\n') stream_.get();
      break;
    }
    line.push_back(Traits::to_char_type(c));
  }
  if (stream_.bad()) Raise(errPathFileAccess);
  return line;
}

}  // namespace brindlewayProj::platform
