// Test-only helpers shared by the test programs: temporary folders with real store files,
// and a message-box recorder.
#pragma once

#include <filesystem>
#include <vector>

#include <brindleway/types.h>

namespace brindlewayProj::testing {

// A fresh folder under the system's temporary folder, removed with everything in it.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

// Creates a store file with the reference schema (and the sample data when asked) in `dir`.
std::filesystem::path MakeStore(const TempDir& dir, bool withSample = true,
                                const std::string& name = "brindleway.mdb");

// Records every message box shown while it lives, answering OK; restores the default after.
class MessageBoxRecorder {
 public:
  struct Shown {
    String prompt;
    Integer flags;
  };
  MessageBoxRecorder();
  ~MessageBoxRecorder();
  const std::vector<Shown>& shown() const { return shown_; }

 private:
  std::vector<Shown> shown_;
};

}  // namespace brindlewayProj::testing
