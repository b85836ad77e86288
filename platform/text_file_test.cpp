// Reading text files line by line: every kind of line end, and the failures.
#include "platform/text_file.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/error.h"
#include "tests/support/test_support.h"

namespace brindlewayProj::platform {
namespace {

std::vector<String> ReadAll(const std::filesystem::path& file) {
  TextFile text(file.string());
  std::vector<String> lines;
  while (!text.Eof()) lines.push_back(text.LineInput());
  return lines;
}

Long FailureNumber(const std::function<void()>& action) {
  try {
    action();
  } catch (const Error& failure) {
    return failure.Number();
  }
  return 0;
}

TEST(TextFileTest, ReadsLinesWithAnyLineEnd) {
  struct Case {
    std::string content;
    std::vector<String> lines;
  };
  const Case cases[] = {
      {"", {}},
      {"one", {"one"}},
      {"one\ntwo\n", {"one", "two"}},
      {"one\r\ntwo\r\n", {"one", "two"}},
      {"one\rtwo", {"one", "two"}},
      {"\n\r\n\r", {"", "", ""}},
      {"a\r\r\nb", {"a", "", "b"}},
      {std::string("nul\0inside\n", 11), {std::string("nul\0inside", 10)}},
      {"\xff\xfe broken\n", {"\xff\xfe broken"}},
  };
  testing::TempDir dir;
  for (const Case& c : cases) {
    std::ofstream(dir / "lines.txt", std::ios::binary | std::ios::trunc) << c.content;
    EXPECT_EQ(ReadAll(dir / "lines.txt"), c.lines) << c.content;
  }
}

TEST(TextFileTest, ReadsALongLineWhole) {
  testing::TempDir dir;
  const std::string line(4 << 20, 'x');
  std::ofstream(dir / "long.txt", std::ios::binary) << line << "\nend";
  EXPECT_EQ(ReadAll(dir / "long.txt"), (std::vector<String>{line, "end"}));
}

TEST(TextFileTest, Failures) {
  testing::TempDir dir;
  std::ofstream(dir / "one.txt") << "only\n";
  const String folder = dir.path().string();
  EXPECT_EQ(FailureNumber([&] { TextFile(folder + "\\missing.ini"); }), errFileNotFound);
  EXPECT_EQ(FailureNumber([&] { TextFile(""); }), errFileNotFound);
  EXPECT_EQ(FailureNumber([&] { TextFile{folder}; }), errPathFileAccess);
  TextFile file(folder + "\\one.txt");
  EXPECT_EQ(file.LineInput(), "only");
  EXPECT_TRUE(file.Eof());
  EXPECT_EQ(FailureNumber([&] { file.LineInput(); }), errInputPastEndOfFile);
}

}  // namespace
}  // namespace brindlewayProj::platform
