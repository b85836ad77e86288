// App's folder and name, and the message box's default and replaced handlers.
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

TEST(MessageBoxTest, DefaultWritesToStandardErrorUntilReplaced) {
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(MsgBox("Could not connect", vbExclamation), vbOK);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Could not connect\n");

  String seen;
  SetMessageBoxHandler([&](const String& prompt, Integer flags) {
    seen = prompt + "/" + std::to_string(flags);
    return Integer{2};
  });
  EXPECT_EQ(MsgBox("prompt", vbExclamation), 2);
  EXPECT_EQ(seen, "prompt/48");
  SetMessageBoxHandler(nullptr);
}

}  // namespace
}  // namespace brindlewayProj::platform
