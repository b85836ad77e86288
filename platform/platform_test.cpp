// The platform's services on real files: path mapping and Dir, text files read line by line
// with every kind of line end and the failures; and the message box's default handler (App.Path
// is tested on the server file).
#include <brindleway/hooks.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>
#include <string_view>
#include <vector>

#include <brindleway/error.h>
#include "platform/message_box.h"
#include "platform/paths.h"
#include "platform/text_file.h"
#include "tests/support/test_support.h"

namespace brindlewayProj::platform {
namespace {

TEST(PathsTest, MapsTheComponentsPaths) {
  const std::pair<const char*, const char*> cases[] = {
      {"Z:\\srv\\shop.mdb", "/srv/shop.mdb"},
      {"c:/srv/shop.mdb", "/srv/shop.mdb"},
      {"\\\\server\\share\\shop.mdb", "//server/share/shop.mdb"},
      {"data\\shop.mdb", "data/shop.mdb"},
      {"C:data.mdb", "C:data.mdb"},  // drive-relative: names no root
  };
  for (const auto& [given, host] : cases) EXPECT_EQ(ToHostPath(given).string(), host);
}

TEST(PathsTest, DirAnswersTheNameOfAnExistingFile) {
  testing::TempDir dir;
  std::ofstream(dir / "shop.mdb") << "x";
  std::filesystem::create_directory(dir / "folder.mdb");
  const String folder = dir.path().string();
  EXPECT_EQ(Dir("C:" + folder + "\\shop.mdb"), "shop.mdb");
  for (const String& none : {folder + "\\missing.mdb", folder + "\\folder.mdb", String(),
                             folder + "\\shop.mdb" + String(1, '\0'), String(1 << 20, 'a')}) {
    EXPECT_EQ(Dir(none), "") << none.substr(0, 40);
  }
}

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
  using testing::ErrorOf;
  EXPECT_EQ(ErrorOf([&] { TextFile(folder + "\\missing.ini"); }).first, errFileNotFound);
  EXPECT_EQ(ErrorOf([&] { TextFile{folder}; }).first, errPathFileAccess);
  TextFile file(folder + "\\one.txt");
  file.LineInput();
  EXPECT_EQ(ErrorOf([&] { file.LineInput(); }).first, errInputPastEndOfFile);

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
  EXPECT_EQ(ErrorOf([&] { broken.LineInput(); }).first, errPathFileAccess);
  EXPECT_EQ(ErrorOf([&] { broken.Eof(); }).first, errPathFileAccess);
}

TEST(MessageBoxTest, DefaultWritesToStandardError) {
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(MsgBox("Could not connect", vbExclamation), vbOK);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Could not connect\n");
}

}  // namespace
}  // namespace brindlewayProj::platform
