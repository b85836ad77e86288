// The message box's default and replaced handlers (App.Path is tested on the server file).
#include <brindleway/hooks.h>

#include <gtest/gtest.h>

#include "platform/message_box.h"

namespace brindlewayProj::platform {
namespace {

TEST(MessageBoxTest, DefaultWritesToStandardError) {
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(MsgBox("Could not connect", vbExclamation), vbOK);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Could not connect\n");
}

}  // namespace
}  // namespace brindlewayProj::platform
