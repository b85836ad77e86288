// Reading text files line by line: every kind of line end, and the failures.
#include "platform/text_file.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>
#include <functional>
#include <string_view>
#include <vector>

#include <brindleway/error.h>
#include "tests/support/test_support.h"

namespace brindlewayProj::platform {
namespace {

std::vector<String> ReadAll(const std::filesystem::path& file) {
  TextFile text(file.string());
  std::vector<String> lines;
  while (!text.Eof()) lines.push_back(text.LineInput());
  return lines;
}

TEST(TextFileTest, ReadsLinesWithAnyLineEnd) {
  const std::string longLine(4 << 20, 'x');
  const std::pair<std::string, std::vector<String>> cases[] = {
      {"one\r\ntwo\n", {"one", "two"}},
      {"a\r\r\nb\r", {"a", "", "b"}},
      {std::string("nul\0\xff\n", 6), {std::string("nul\0\xff", 5)}},
      {longLine + "\nend", {longLine, "end"}},
  };
  testing::TempDir dir;
  for (const auto& [content, lines] : cases) {
    std::ofstream(dir / "lines.txt", std::ios::binary | std::ios::trunc) << content;
    EXPECT_EQ(ReadAll(dir / "lines.txt"), lines) << content.substr(0, 20);
  }
}

TEST(TextFileTest, Failures) {
  testing::TempDir dir;
  std::ofstream(dir / "one.txt") << "only\n";
  const String folder = dir.path().string();
  const auto expectFailure = [](Long number, const std::function<void()>& action) {
    try {
      action();
      ADD_FAILURE() << "no failure, expected " << number;
    } catch (const Error& failure) {
      EXPECT_EQ(failure.Number(), number);
    }
  };
  expectFailure(errFileNotFound, [&] { TextFile(folder + "\\missing.ini"); });
  expectFailure(errPathFileAccess, [&] { TextFile{folder}; });
  TextFile file(folder + "\\one.txt");
  file.LineInput();
  expectFailure(errInputPastEndOfFile, [&] { file.LineInput(); });

  // A read that fails part-way, as on a failing disk, is no end of file.
  cookie_io_functions_t failing{};
  failing.read = [](void* cookie, char* buffer, size_t size) -> ssize_t {
    auto& rest = *static_cast<std::string_view*>(cookie);
    if (rest.empty()) {
      errno = EIO;
      return -1;
    }
    const size_t count = rest.copy(buffer, size);
    rest.remove_prefix(count);
    return static_cast<ssize_t>(count);
  };
  std::string_view content = "[brindleway]\nDbPa";
  TextFile broken = TextFile::FromStreamForTesting(fopencookie(&content, "r", failing));
  EXPECT_EQ(broken.LineInput(), "[brindleway]");
  expectFailure(errPathFileAccess, [&] { broken.LineInput(); });
  expectFailure(errPathFileAccess, [&] { broken.Eof(); });
}

}  // namespace
}  // namespace brindlewayProj::platform
