// Failures from below the object model: files that cannot be opened and a store held by a
// writer elsewhere, each with the store's exact error. (Failures injected into the backend
// are checked through the component's methods, in tests/fault_injection_test.cpp.)
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>

#include "dataaccess/dao_test_support.h"
#include "store/errors.h"

namespace brindlewayProj::dao {
namespace {

TEST(OpenDatabase, RefusesWhatIsNoStore) {
  testing::TempDir dir;
  auto text = dir / "notes.mdb";
  std::ofstream(text) << "These are shopping notes, not a database. " << std::string(4096, 'x');
  std::ofstream(dir / "empty.mdb").flush();
  auto& workspace = *DBEngine().Workspaces(0);
  const String missing = (dir / "missing.mdb").string();
  EXPECT_STORE_ERROR(workspace.OpenDatabase(missing), store::errFileNotFound,
                     "Could not find file '" + missing + "'.");
  EXPECT_STORE_ERROR(workspace.OpenDatabase(text.string()), store::errUnrecognizedFormat,
                     "Unrecognized database format '" + text.string() + "'.");
  for (auto path : {dir / "empty.mdb", dir.path()}) {
    EXPECT_STORE_ERROR(workspace.OpenDatabase(path.string()), store::errUnrecognizedFormat,
                       "Unrecognized database format '" + path.string() + "'.");
  }
  EXPECT_STORE_ERROR(workspace.OpenDatabase(""), store::errInvalidArgument,
                     "Invalid argument: the database name is empty.");
  EXPECT_EQ(DBEngine().Workspaces(0), DBEngine().Workspaces(0));
  EXPECT_STORE_ERROR(DBEngine().Workspaces(1), store::errItemNotFound,
                     "Item not found in this collection.");
}

// BeginTrans opens the transaction at once; the store's write lock is taken by the first
// statement inside it, which waits for the other writer up to the timeout and then fails with
// the transaction still open, so that Rollback ends it.
TEST_F(StoreTest, AWriterElsewhereFailsTheFirstStatementOfTheTransaction) {
  sqlite3* other = nullptr;
  sqlite3_open(file_.c_str(), &other);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  Workspace().BeginTrans();
  try {
    Db().OpenRecordset("Orders");
    ADD_FAILURE() << "no lock conflict";
  } catch (const platform::Error& failure) {  // the store's words, and the engine's beside them
    EXPECT_EQ(failure.Number(), store::errLocked);
    EXPECT_EQ(failure.Description(), "Could not update; currently locked.");
    EXPECT_EQ(failure.Context().query, "Orders");
    EXPECT_EQ(failure.Context().engineCode, SQLITE_BUSY);
    EXPECT_EQ(failure.Context().engineMessage, "database is locked");
  }
  Workspace().Rollback();
  sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close(other);
  Workspace().BeginTrans();
  Db().Execute("Delete From [OrderBasket] Where [OrderId] = 1", dbFailOnError);
  Workspace().CommitTrans();
  EXPECT_EQ(Db().RecordsAffected(), 3);
}

}  // namespace
}  // namespace brindlewayProj::dao
