// Path mapping from the component's paths, and Dir on real files.
#include "platform/paths.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/support/test_support.h"

namespace brindlewayProj::platform {
namespace {

TEST(PathsTest, MapsTheComponentsPaths) {
  struct Case {
    const char* given;
    const char* host;
  };
  const Case cases[] = {
      {"Z:\\srv\\shop.mdb", "/srv/shop.mdb"},
      {"c:/srv/shop.mdb", "/srv/shop.mdb"},
      {"\\\\server\\share\\shop.mdb", "//server/share/shop.mdb"},
      {"/opt/shop\\data\\shop.mdb", "/opt/shop/data/shop.mdb"},
      {"data\\shop.mdb", "data/shop.mdb"},
      {"C:data.mdb", "C:data.mdb"},  // drive-relative: no root named
      {"", ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ToHostPath(c.given).string(), c.host) << c.given;
  }
}

TEST(PathsTest, DirAnswersTheNameOfAnExistingFile) {
  testing::TempDir dir;
  std::ofstream(dir / "shop.mdb") << "x";
  std::filesystem::create_directory(dir / "folder.mdb");
  const String folder = dir.path().string();
  EXPECT_EQ(Dir(folder + "\\shop.mdb"), "shop.mdb");
  EXPECT_EQ(Dir("C:" + folder + "/shop.mdb"), "shop.mdb");
  EXPECT_EQ(Dir(folder + "\\missing.mdb"), "");
  EXPECT_EQ(Dir(folder + "\\folder.mdb"), "");  // a folder is no file
  EXPECT_EQ(Dir(folder), "");
  EXPECT_EQ(Dir(""), "");
  EXPECT_EQ(Dir(folder + "\\shop.mdb" + String(1, '\0') + "x"), "");
  EXPECT_EQ(Dir(String(1 << 20, 'a')), "");  // too long a name is simply no file
}

}  // namespace
}  // namespace brindlewayProj::platform
