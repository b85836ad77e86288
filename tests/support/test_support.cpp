// Temporary folders, store files and message-box recording for the tests.
#include "tests/support/test_support.h"

#include <random>

#include "platform/message_box.h"
#include "store/schema.h"

namespace brindlewayProj::testing {

TempDir::TempDir() {
  std::random_device seed;
  std::mt19937_64 random(seed());
  path_ = std::filesystem::temp_directory_path() /
          ("brindleway-test-" + std::to_string(random()));
  std::filesystem::create_directories(path_);
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path MakeStore(const TempDir& dir, bool withSample, const std::string& name) {
  auto file = dir / name;
  store::CreateStore(file, withSample);
  return file;
}

MessageBoxRecorder::MessageBoxRecorder() {
  platform::SetMessageBoxHandler([this](const String& prompt, Integer flags) {
    shown_.push_back({prompt, flags});
    return platform::vbOK;
  });
}

MessageBoxRecorder::~MessageBoxRecorder() { platform::SetMessageBoxHandler(nullptr); }

}  // namespace brindlewayProj::testing
