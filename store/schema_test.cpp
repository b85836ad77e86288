// Store creation: the reference schema in WAL mode, the sample rows, and an existing file left
// as it was.
#include "store/schema.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "store/errors.h"
#include "tests/support/test_support.h"

namespace brindlewayProj::store {
namespace {

using brindlewayProj::testing::SqlScalar;
using brindlewayProj::testing::TempDir;

TEST(CreateStore, WritesTheSchemaInWalModeWithOrWithoutSamples) {
  TempDir dir;
  CreateStore(dir / "sample.mdb", true);
  CreateStore(dir / "empty.mdb", false);
  EXPECT_EQ(SqlScalar(dir / "sample.mdb", "PRAGMA journal_mode"), "wal");
  EXPECT_EQ(SqlScalar(dir / "sample.mdb",
                      "SELECT count(*) FROM sqlite_master WHERE name IN ('Customers', 'Products', "
                      "'Orders', 'OrderBasket', 'OrdersWithNames', 'BasketList')"),
            "6");
  EXPECT_EQ(SqlScalar(dir / "sample.mdb", "PRAGMA foreign_key_check"), "no row");
  EXPECT_EQ(SqlScalar(dir / "empty.mdb", "SELECT count(*) FROM Orders"), "0");
  EXPECT_EQ(SqlScalar(dir / "empty.mdb", "SELECT count(*) FROM Products"), "0");
}

// An existing file is left as it was; an empty path and a missing folder are refused.
TEST(CreateStore, CreatesNothingWhereItMayNot) {
  TempDir dir;
  auto file = dir / "shop.mdb";
  std::ofstream(file) << "keep me";
  try {
    CreateStore(file, true);
    ADD_FAILURE() << "created over an existing file";
  } catch (const platform::Error& failure) {
    EXPECT_EQ(failure.Number(), errAlreadyExists);
    EXPECT_EQ(failure.Description(), "Database '" + file.string() + "' already exists.");
  }
  std::stringstream content;
  content << std::ifstream(file).rdbuf();
  EXPECT_EQ(content.str(), "keep me");

  EXPECT_THROW(CreateStore("", false), platform::Error);
  auto missing = dir / "no-such-folder" / "shop.mdb";
  try {
    CreateStore(missing, false);
    ADD_FAILURE() << "created in a missing folder";
  } catch (const platform::Error& failure) {
    EXPECT_EQ(failure.Number(), errInvalidPath);
  }
  EXPECT_FALSE(std::filesystem::exists(missing));
}

}  // namespace
}  // namespace brindlewayProj::store
