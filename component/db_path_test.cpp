// ReadDbPath over ini files of many shapes in a temporary component folder.
#include <gtest/gtest.h>

#include <fstream>

#include <brindleway/error.h>
#include <brindleway/hooks.h>
#include "component/brindleway_test_access.h"
#include "tests/support/test_support.h"

namespace brindlewayProj {
namespace {

struct IniCase {
  const char* name;
  const char* content;   // nullptr: no ini file at all
  const char* expected;  // "{app}" stands for App.Path
};
void PrintTo(const IniCase& c, std::ostream* out) { *out << c.name; }

class ReadDbPathTest : public ::testing::TestWithParam<IniCase> {
 protected:
  testing::ComponentFolder dir_;
};

TEST_P(ReadDbPathTest, FindsThePathOfTheFirstKeyLineBehindTheSection) {
  const IniCase& c = GetParam();
  if (c.content != nullptr)
    std::ofstream(dir_ / "brindlewayProj.ini", std::ios::binary) << c.content;
  brindleway object;

  String expected = c.expected;
  if (expected.starts_with("{app}")) expected.replace(0, 5, platform::App::Path());
  EXPECT_EQ(BrindlewayTestAccess::ReadDbPath(object), expected);
}

INSTANTIATE_TEST_SUITE_P(
    IniShapes, ReadDbPathTest,
    ::testing::Values(
        IniCase{"NoIniFile", nullptr, ""}, IniCase{"EmptyFile", "", ""},
        IniCase{"NoSection", "[shop]\nDbPath=C:\\x.mdb\n", ""},
        IniCase{"SectionWithoutKey", "[brindleway]\nOther=1\n", ""},
        IniCase{"AnyCaseDrivePath", "[BRINDLEWAY]\r\ndbpath = C:\\x.mdb  \r\n", "C:\\x.mdb"},
        IniCase{"NetworkPath", "[brindleway]\nDbPath=\\\\server\\share\\b.mdb\n",
                "\\\\server\\share\\b.mdb"},
        IniCase{"RelativePath", "[brindleway]\nDbPath=data\\shop.mdb", "{app}\\data\\shop.mdb"},
        IniCase{"KeyAboveSectionSkipped", "DbPath=C:\\above.mdb\n[brindleway]\n", ""},
        IniCase{"KeyBelowSectionTaken",
                "DbPath=C:\\above.mdb\n[brindleway]\nDbPath=C:\\below.mdb\n", "C:\\below.mdb"},
        IniCase{"ValueHoldingTheWordOpensTheSection",
                "[other]\nPath=C:\\brindleway.mdb\nDbPath=C:\\other.mdb\n[brindleway]\n"
                "DbPath=C:\\mine.mdb\n",
                "C:\\other.mdb"},
        IniCase{"OneLineHoldingBothWords", "[brindleway] DbPath=C:\\x.mdb\n", ""},
        IniCase{"KeyInALaterSection", "[brindleway]\n[next]\nDbPath=C:\\x.mdb\n", "C:\\x.mdb"},
        IniCase{"KeyLineWithoutEquals", "[brindleway]\n  DbPath  \n", "{app}\\DbPath"},
        IniCase{"EmptyValueStopsTheSearch", "[brindleway]\nDbPath=\nDbPath=C:\\x.mdb\n", "{app}\\"},
        IniCase{"LongerKeyQuotesAndFurtherEquals", "[brindleway]\nMyDbPath = \"C:\\a=b.mdb\" \n",
                "\"C:\\a=b.mdb\""},
        IniCase{"TabsAreNotTrimmed", "[brindleway]\nDbPath=\tC:\\x.mdb\t\n", "\tC:\\x.mdb\t"},
        IniCase{"SingleBackslashIsRelative", "[brindleway]\nDbPath=\\x.mdb\n", "{app}\\\\x.mdb"},
        IniCase{"DriveWithoutBackslashIsRelative", "[brindleway]\nDbPath=C:x.mdb\n",
                "{app}\\C:x.mdb"},
        IniCase{"ForwardSlashesAreRelative", "[brindleway]\nDbPath=/srv/x.mdb\n",
                "{app}\\/srv/x.mdb"}),
    [](const ::testing::TestParamInfo<IniCase>& info) { return String(info.param.name); });

// An ini file that opens but cannot be read is no empty file: the creation fails with the
// read error, before any connection and without a message box.
TEST(ReadDbPathFailureTest, UnreadableIniFileFailsTheCreation) {
  if (!std::filesystem::exists("/proc/self/mem")) GTEST_SKIP() << "no /proc";
  testing::TempDir dir;
  testing::MessageBoxRecorder boxes;
  platform::App::SetPath(dir.path().string());
  std::filesystem::create_symlink("/proc/self/mem", dir / "brindlewayProj.ini");
  try {
    brindleway object;
    ADD_FAILURE() << "created on " << BrindlewayTestAccess::DbFileName(object);
  } catch (const platform::Error& failure) {
    EXPECT_EQ(failure.Number(), platform::errPathFileAccess);
  }
  platform::App::SetPath("");
  EXPECT_TRUE(boxes.shown().empty());
}

}  // namespace
}  // namespace brindlewayProj
