// Test-only helpers shared by the test programs: temporary folders with real store files, SQL
// run straight on a store file, and a message-box recorder.
#pragma once

#include <filesystem>
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

// The engine the store tests run on: PostgreSQL when BRINDLEWAY_TEST_ENGINE is "postgres"
// (ctest's postgres-labelled tests), else SQLite. Without a reachable server the PostgreSQL
// tests skip, unless BRINDLEWAY_REQUIRE_ALL is set (as in CI), where they fail.
bool TestEngineIsPostgres();

// Creates a store with the reference schema (and the sample data when asked): on SQLite the file
// `name` in `dir`, on PostgreSQL a fresh database (dropped when the test program ends), named by
// its connection URI; for the default name, the ini file in `dir` names that database, so
// that a component in `dir` opens it as it would open brindleway.mdb there.
std::filesystem::path MakeStore(const TempDir& dir, bool withSample = true,
                                const std::string& name = "brindleway.mdb");

// Runs `sql` (one or more statements) on a connection of its own, outside the component and its
// transactions, and answers the rows it gives with every column as text ("NULL" for NULL). An
// error fails the test. The reference schema's names may stand bare, as SQLite takes them; on
// PostgreSQL, which would fold them to lower case, they are quoted first.
using SqlRow = std::vector<std::string>;
std::vector<SqlRow> SqlRows(const std::filesystem::path& file, const std::string& sql);
// The first column of the first row of `sql`, or "no row".
std::string SqlScalar(const std::filesystem::path& file, const std::string& sql);

// The entries of a collection, in order, as texts.
std::vector<String> Entries(const std::shared_ptr<Collection>& entries);

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

// The component's folder for a test: a fresh folder that App.Path names, with US English dates
// and the message boxes recorded; the defaults come back when it goes.
class ComponentFolder : public TempDir {
 public:
  ComponentFolder();
  ~ComponentFolder();
  MessageBoxRecorder boxes;
};

}  // namespace brindlewayProj::testing
