// Path mapping from the component's paths, and Dir on real files.
#include "platform/paths.h"

#include <gtest/gtest.h>

#include <fstream>

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

}  // namespace
}  // namespace brindlewayProj::platform
