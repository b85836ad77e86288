// Failures from below the object model: files that cannot be opened and a store held by a
// writer elsewhere, each with the store's exact error. (Failures injected into the backend
// are checked through the component's methods, in tests/fault_injection_test.cpp.)
#include <gtest/gtest.h>

#include <fstream>

#include "dataaccess/dao_test_support.h"
#include "store/backend.h"
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
  auto other = store::OpenEngineConnection(file_);
  other->Begin(1);
  other->Describe("Orders");  // the write lock is taken by now on every engine
  Workspace().BeginTrans();
  try {
    Db().OpenRecordset("Orders");
    ADD_FAILURE() << "no lock conflict";
  } catch (const platform::Error& failure) {  // the store's words, and the engine's beside them
    EXPECT_EQ(failure.Number(), store::errLocked);
    EXPECT_EQ(failure.Description(), "Could not update; currently locked.");
    EXPECT_EQ(failure.Context().query, "Orders");
    EXPECT_NE(failure.Context().engineCode, 0);
    EXPECT_FALSE(failure.Context().engineMessage.empty());
  }
  Workspace().Rollback();
  other->Rollback(1);
  Workspace().BeginTrans();
  Db().Execute("Delete From [OrderBasket] Where [OrderId] = 1", dbFailOnError);
  Workspace().CommitTrans();
  EXPECT_EQ(Db().RecordsAffected(), 3);
}

}  // namespace
}  // namespace brindlewayProj::dao
