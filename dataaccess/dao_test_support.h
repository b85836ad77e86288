// Helpers of the object-model tests: a store in a temporary folder opened through the default
// workspace, and checks of the store's exact failures.
#pragma once

#include <gtest/gtest.h>

#include <brindleway/dao.h>
#include "tests/support/test_support.h"

namespace brindlewayProj::dao {

class StoreTest : public ::testing::Test {
 protected:
  StoreTest() : file_(testing::MakeStore(dir_)) { db_ = Workspace().OpenDatabase(file_.string()); }

  static dao::Workspace& Workspace() { return *DBEngine().Workspaces(0); }
  dao::Database& Db() { return *db_; }
  std::shared_ptr<Recordset> Snapshot(const String& query) {
    return db_->OpenRecordset(query, dbOpenSnapshot);
  }
  std::shared_ptr<Recordset> Dynaset(const String& query) {
    return db_->OpenRecordset(query, dbOpenDynaset);
  }
  // The named field of the current row.
  static Variant Value(Recordset& recordset, const String& field) {
    return recordset.Fields()->Item(field)->Value();
  }
  // The number of rows a query gives.
  Long Count(const String& query) {
    auto recordset = Snapshot(query);
    if (recordset->RecordCount() > 0) recordset->MoveLast();
    return recordset->RecordCount();
  }

  testing::TempDir dir_;
  std::filesystem::path file_;
  std::shared_ptr<Database> db_;
};

// Runs `call` and checks that it raises exactly `number` with `description`.
#define EXPECT_STORE_ERROR(call, number, description)             \
  try {                                                           \
    call;                                                         \
    ADD_FAILURE() << #call " did not fail";                       \
  } catch (const platform::Error& failure) {                      \
    EXPECT_EQ(failure.Number(), number) << failure.Description(); \
    EXPECT_EQ(failure.Description(), description);                \
  }

}  // namespace brindlewayProj::dao
