// Temporary folders, store files, straight SQL and message-box recording for the tests.
#include "tests/support/test_support.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <random>

#include <brindleway/hooks.h>
#include "platform/message_box.h"
#include "platform/regional.h"
#include "store/schema.h"

namespace brindlewayProj::testing {

TempDir::TempDir() {
  std::random_device seed;
  std::mt19937_64 random(seed());
  path_ = std::filesystem::temp_directory_path() / ("brindleway-test-" + std::to_string(random()));
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

std::vector<SqlRow> SqlRows(const std::filesystem::path& file, const std::string& sql) {
  std::vector<SqlRow> rows;
  auto collect = [](void* out, int columns, char** values, char**) {
    SqlRow& row = static_cast<std::vector<SqlRow>*>(out)->emplace_back();
    for (int i = 0; i < columns; ++i) row.push_back(values[i] ? values[i] : "NULL");
    return 0;
  };
  sqlite3* db = nullptr;
  char* error = nullptr;
  sqlite3_open(file.c_str(), &db);
  sqlite3_busy_timeout(db, 5000);
  if (sqlite3_exec(db, sql.c_str(), collect, &rows, &error) != SQLITE_OK) {
    ADD_FAILURE() << (error ? error : sqlite3_errmsg(db)) << " in: " << sql;
    sqlite3_free(error);
  }
  sqlite3_close(db);
  return rows;
}

std::string SqlScalar(const std::filesystem::path& file, const std::string& sql) {
  const auto rows = SqlRows(file, sql);
  return rows.empty() ? "no row" : rows[0][0];
}

std::vector<String> Entries(const std::shared_ptr<Collection>& entries) {
  std::vector<String> texts;
  for (Long i = 1; i <= entries->Count(); ++i) texts.push_back(CStr(entries->Item(i)));
  return texts;
}

MessageBoxRecorder::MessageBoxRecorder() {
  platform::SetMessageBoxHandler([this](const String& prompt, Integer flags) {
    shown_.push_back({prompt, flags});
    return platform::vbOK;
  });
}

MessageBoxRecorder::~MessageBoxRecorder() { platform::SetMessageBoxHandler(nullptr); }

ComponentFolder::ComponentFolder() {
  platform::App::SetPath(path().string());
  platform::SetRegionalLocale("en_US");
}

ComponentFolder::~ComponentFolder() {
  platform::SetRegionalLocale("");
  platform::App::SetPath("");
}

}  // namespace brindlewayProj::testing
