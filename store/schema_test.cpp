// Store creation: the reference schema in WAL mode, the sample rows, and an existing file left
// as it was.
#include "store/schema.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <sstream>

#include "store/errors.h"
#include "tests/support/test_support.h"

namespace brindlewayProj::store {
namespace {

using brindlewayProj::testing::TempDir;

// The first column of the first row of `sql`, as text.
std::string Scalar(const std::filesystem::path& file, const char* sql) {
  sqlite3* db = nullptr;
  sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
  sqlite3_stmt* statement = nullptr;
  std::string result = "<error>";
  if (sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) == SQLITE_OK) {
    result = "<no row>";
    if (sqlite3_step(statement) == SQLITE_ROW) {
      auto* text = sqlite3_column_text(statement, 0);
      result = text ? reinterpret_cast<const char*>(text) : "<null>";
    }
  }
  sqlite3_finalize(statement);
  sqlite3_close(db);
  return result;
}

TEST(CreateStore, WritesTheSchemaInWalModeWithOrWithoutSamples) {
  TempDir dir;
  CreateStore(dir / "sample.mdb", true);
  CreateStore(dir / "empty.mdb", false);
  EXPECT_EQ(Scalar(dir / "sample.mdb", "PRAGMA journal_mode"), "wal");
  EXPECT_EQ(Scalar(dir / "sample.mdb",
                   "SELECT count(*) FROM sqlite_master WHERE name IN ('Customers', 'Products', "
                   "'Orders', 'OrderBasket', 'OrdersWithNames', 'BasketList')"),
            "6");
  EXPECT_EQ(Scalar(dir / "sample.mdb", "SELECT count(*) FROM Orders"), "5");
  EXPECT_EQ(Scalar(dir / "sample.mdb",
                   "SELECT count(*) FROM BasketList WHERE ProductName IS NULL"),
            "0");
  EXPECT_EQ(Scalar(dir / "sample.mdb", "PRAGMA foreign_key_check"), "<no row>");
  EXPECT_EQ(Scalar(dir / "empty.mdb", "SELECT count(*) FROM Orders"), "0");
  EXPECT_EQ(Scalar(dir / "empty.mdb", "SELECT count(*) FROM Products"), "0");
}

TEST(CreateStore, NeverTouchesAnExistingFile) {
  TempDir dir;
  auto file = dir / "shop.mdb";
  std::ofstream(file) << "keep me";
  try {
    CreateStore(file, true);
    FAIL() << "created over an existing file";
  } catch (const platform::Error& failure) {
    EXPECT_EQ(failure.Number(), errAlreadyExists);
    EXPECT_EQ(failure.Description(), "Database '" + file.string() + "' already exists.");
  }
  std::stringstream content;
  content << std::ifstream(file).rdbuf();
  EXPECT_EQ(content.str(), "keep me");
}

TEST(CreateStore, RefusesAnEmptyPathAndAMissingFolder) {
  TempDir dir;
  EXPECT_THROW(CreateStore("", false), platform::Error);
  auto file = dir / "no-such-folder" / "shop.mdb";
  try {
    CreateStore(file, false);
    FAIL();
  } catch (const platform::Error& failure) {
    EXPECT_EQ(failure.Number(), errInvalidPath);
  }
  EXPECT_FALSE(std::filesystem::exists(file));
}

}  // namespace
}  // namespace brindlewayProj::store
