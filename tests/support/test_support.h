// Test-only helpers: temporary folders, stores, SQL run straight on a store, message boxes.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <brindleway/collection.h>

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

// PostgreSQL when BRINDLEWAY_TEST_ENGINE is "postgres" (ctest's postgres label), else SQLite.
// Without a server the PostgreSQL tests skip, or fail when BRINDLEWAY_REQUIRE_ALL is set.
bool TestEngineIsPostgres();

// A store with the reference schema (and the sample data when asked): on SQLite the file `name`
// in `dir`; on PostgreSQL a fresh database named by its URI, dropped at the end, which for the
// default name the ini file in `dir` names, so that a component in `dir` opens it.
std::filesystem::path MakeStore(const TempDir& dir, bool withSample = true,
                                const std::string& name = "brindleway.mdb");

// Runs `sql` (one or more statements) on a connection of its own and answers its rows as texts
// ("NULL" for NULL); an error fails the test. The schema's names may stand bare on either engine.
using SqlRow = std::vector<std::string>;
std::vector<SqlRow> SqlRows(const std::filesystem::path& file, const std::string& sql);
// The first column of the first row of `sql`, or "no row".
std::string SqlScalar(const std::filesystem::path& file, const std::string& sql);

// What `file` holds ("" when it cannot be read).
std::string ReadFile(const std::filesystem::path& file);

// The entries of a collection, in order, as texts.
std::vector<String> Entries(const std::shared_ptr<Collection>& entries);

// The number and description of the error that `action` raises, or 0 and "".
std::pair<Long, String> ErrorOf(const std::function<void()>& action);

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

// A fresh folder that App.Path names, with US English dates and message boxes recorded.
class ComponentFolder : public TempDir {
 public:
  ComponentFolder();
  ~ComponentFolder();
  MessageBoxRecorder boxes;
};

}  // namespace brindlewayProj::testing
