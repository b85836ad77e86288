// What the fuzz targets share: a check that stops the run with a message libFuzzer reports as
// a crash, so that a broken invariant keeps its input like any other finding; and a scratch
// folder for targets that read files.
#pragma once

#include <brindleway/error.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>

namespace brindlewayProj::fuzz {

inline void Require(bool holds, std::string_view what) {
  if (holds) return;
  std::fprintf(stderr, "invariant broken: %.*s\n", static_cast<int>(what.size()), what.data());
  std::abort();
}

// A platform::Error is a fair answer only with one of the numbers the call documents.
inline void RequireNumber(const platform::Error& failure, std::initializer_list<Long> allowed) {
  for (Long number : allowed) {
    if (failure.Number() == number) return;
  }
  std::fprintf(stderr, "unexpected error %d: %s\n", static_cast<int>(failure.Number()),
               failure.Description().c_str());
  std::abort();
}

// A fresh folder, removed with the process. It lies in memory where the system offers that:
// a file written and renamed thousands of times a second is slow on a journalling disk.
class ScratchFolder {
 public:
  explicit ScratchFolder(std::string_view name) {
    std::error_code absent;
    const std::filesystem::path base = std::filesystem::is_directory("/dev/shm", absent)
                                           ? std::filesystem::path("/dev/shm")
                                           : std::filesystem::temp_directory_path();
    std::string pattern = (base / name).string() + ".XXXXXX";
    Require(::mkdtemp(pattern.data()) != nullptr, "no scratch folder");
    path_ = pattern;
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace brindlewayProj::fuzz
