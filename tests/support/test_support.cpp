// Temporary folders, stores on either engine, straight SQL and message-box recording.
#include "tests/support/test_support.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <stdlib.h>

#include <fstream>
#include <iterator>
#include <cstdio>
#include <cerrno>
#include <cstdlib>
#include <regex>
#include <system_error>

#include <brindleway/hooks.h>
#include "platform/message_box.h"
#include "platform/regional.h"
#include "store/postgres/test_databases.h"
#include "store/schema.h"
#include "store/store_name.h"

namespace brindlewayProj::testing {
namespace {

// Ends a PostgreSQL run without a server before any test, as skipped (77 for ctest) or, where
// one is required, failed; drops the databases the tests made.
class EngineEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    if (!TestEngineIsPostgres()) return;
    auto missing = store::postgres::ServerMissingForTesting();
    if (!missing) return;
    const bool required = std::getenv("BRINDLEWAY_REQUIRE_ALL") != nullptr;
    std::fprintf(stderr, "no PostgreSQL server: %s%s\n", missing->c_str(),
                 required ? "" : "run these tests with one: pg_virtualenv ctest -L postgres");
    std::fflush(stderr);
    std::_Exit(required ? 1 : 77);  // 77: skipped, for ctest
  }
  void TearDown() override {
    for (const auto& uri : databases) store::postgres::DropDatabaseForTesting(uri);
  }
  std::vector<std::string> databases;
};

EngineEnvironment& engine =
    *static_cast<EngineEnvironment*>(::testing::AddGlobalTestEnvironment(new EngineEnvironment));

// `sql` with the reference schema's names quoted where they stand bare: outside the literals
// and quoted names, which are copied as they are.
std::string QuoteSchemaNames(const std::string& sql) {
  static const std::regex piece(
      "('[^']*'|\"[^\"]*\")|\\b(Customers|Products|Orders|OrderBasket|OrdersWithNames|BasketList|"
      "CustomerId|FirstName|LastName|ProductId|ProductName|Vendor|ProductPrice|OrderId|OrderDate|"
      "DeliveryDate|Delivery|Description|Quantity)\\b");
  std::string quoted;
  auto rest = sql.begin();
  for (std::sregex_iterator found(sql.begin(), sql.end(), piece), end; found != end; ++found) {
    quoted.append(rest, (*found)[0].first);
    quoted += (*found)[2].matched ? '"' + found->str(2) + '"' : found->str(1);
    rest = (*found)[0].second;
  }
  return quoted.append(rest, sql.end());
}

}  // namespace

bool TestEngineIsPostgres() {
  const char* engine = std::getenv("BRINDLEWAY_TEST_ENGINE");
  return engine && std::string_view(engine) == "postgres";
}

TempDir::TempDir() {
  std::string pattern = std::filesystem::temp_directory_path() / "brindleway-test-XXXXXX";
  if (!mkdtemp(pattern.data())) throw std::system_error(errno, std::generic_category(), pattern);
  path_ = pattern;
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path MakeStore(const TempDir& dir, bool withSample, const std::string& name) {
  if (TestEngineIsPostgres()) {
    const std::string uri =
        engine.databases.emplace_back(store::postgres::CreateDatabaseForTesting(withSample));
    // The default store of a component in `dir` is the database the ini file there names.
    if (name == "brindleway.mdb") {
      std::ofstream(dir / (platform::App::EXEName() + ".ini")) << "[brindleway]\nDbPath=" << uri;
    }
    return uri;
  }
  auto file = dir / name;
  store::CreateStore(file, withSample);
  return file;
}

std::vector<SqlRow> SqlRows(const std::filesystem::path& file, const std::string& sql) {
  if (store::IsConnectionUri(file.native())) {
    std::string error;
    auto rows = store::postgres::RunSqlForTesting(file.native(), QuoteSchemaNames(sql), error);
    if (!error.empty()) ADD_FAILURE() << error << " in: " << sql;
    return rows;
  }
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

std::string ReadFile(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

std::vector<String> Entries(const std::shared_ptr<Collection>& entries) {
  std::vector<String> texts;
  for (Long i = 1; i <= entries->Count(); ++i) texts.push_back(CStr(entries->Item(i)));
  return texts;
}

std::pair<Long, String> ErrorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const platform::Error& failure) {
    return {failure.Number(), failure.Description()};
  }
  return {0, ""};
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
