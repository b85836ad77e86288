// App's folder and name, and the message box's default handler (a replaced one records the
// boxes of the connection tests).
#include <brindleway/hooks.h>

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/message_box.h"

namespace brindlewayProj::platform {
namespace {

TEST(AppTest, PathIsTheFolderOfTheComponentFile) {
  const String folder = App::Path();
  EXPECT_TRUE(std::filesystem::is_regular_file(folder + "/" + App::EXEName() + ".so")) << folder;
  App::SetPath("/srv/shop");
  EXPECT_EQ(App::Path(), "/srv/shop");
  App::SetPath("");
  EXPECT_EQ(App::Path(), folder);
}

// With no handler set, a message box writes its prompt to standard error and answers OK.
TEST(MessageBoxTest, DefaultWritesToStandardError) {
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(MsgBox("Could not connect", vbExclamation), vbOK);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Could not connect\n");
}

}  // namespace
}  // namespace brindlewayProj::platform
