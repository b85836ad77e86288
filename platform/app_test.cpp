// App's folder and name, and the message box's default and replaced handlers.
#include "platform/app.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/message_box.h"

namespace brindlewayProj::platform {
namespace {

TEST(AppTest, PathIsTheFolderOfTheComponentFile) {
  const String folder = App::Path();
  EXPECT_TRUE(
      std::filesystem::is_regular_file(std::filesystem::path(folder) / (App::EXEName() + ".so")))
      << folder;
  EXPECT_NE(folder.back(), '/');
  App::SetPath("/srv/shop");
  EXPECT_EQ(App::Path(), "/srv/shop");
  App::SetPath("");
  EXPECT_EQ(App::Path(), folder);
}

TEST(MessageBoxTest, DefaultWritesToStandardErrorAndAnswersOk) {
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(MsgBox("Could not connect", vbExclamation), vbOK);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Could not connect\n");
}

TEST(MessageBoxTest, HandlerDecidesUntilRemoved) {
  String seen;
  SetMessageBoxHandler([&](const String& prompt, Integer flags) {
    seen = prompt + "/" + std::to_string(flags);
    return Integer{2};
  });
  EXPECT_EQ(MsgBox("prompt", vbExclamation), 2);
  EXPECT_EQ(seen, "prompt/48");
  SetMessageBoxHandler(nullptr);
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(MsgBox("again"), vbOK);
  ::testing::internal::GetCapturedStderr();
  EXPECT_EQ(seen, "prompt/48");
}

}  // namespace
}  // namespace brindlewayProj::platform
