// Test-only fixture for the order and basket methods: a brindleway object connected to a fresh
// store file (customers 17 and 18, products 7 and 8), US English dates, and SQL run straight on
// the file through a connection of the test's own.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <memory>

#include <brindleway/brindleway.h>
#include <brindleway/hooks.h>
#include "platform/regional.h"
#include "tests/support/test_support.h"

namespace brindlewayProj::testing {

class ShopTest : public ::testing::Test {
 protected:
  ShopTest() : store_(MakeStore(dir_, false)) {
    platform::App::SetPath(dir_.path().string());
    platform::SetRegionalLocale("en_US");
    Sql("INSERT INTO Customers VALUES (17, ' Ann', 'Lee'), (18, 'Bo', 'Kim');"
        "INSERT INTO Products VALUES (7, 'Tea', 'Leafco', 4.5), (8, ' Mug ', 'Clayworks', 9);");
    shop_ = std::make_unique<brindleway>();
  }
  ~ShopTest() override {
    shop_.reset();
    platform::SetRegionalLocale("");
    platform::App::SetPath("");
  }

  // Runs `statements` on a connection of its own, outside the component and its transactions.
  void Sql(const std::string& statements) {
    Connection db(store_);
    char* error = nullptr;
    ASSERT_EQ(sqlite3_exec(db.handle, statements.c_str(), nullptr, nullptr, &error), SQLITE_OK)
        << error;
  }
  // The first column of the first row of `query` on a connection of its own; "NULL" for NULL.
  std::string Scalar(const std::string& query) {
    Connection db(store_);
    sqlite3_stmt* statement = nullptr;
    std::string text = "no row";
    if (sqlite3_prepare_v2(db.handle, query.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
      text = sqlite3_errmsg(db.handle);
    } else if (sqlite3_step(statement) == SQLITE_ROW) {
      auto value = sqlite3_column_text(statement, 0);
      text = value ? reinterpret_cast<const char*>(value) : "NULL";
    }
    sqlite3_finalize(statement);
    return text;
  }
  // The entries of a collection, in order, as texts.
  static std::vector<String> Entries(const std::shared_ptr<Collection>& entries) {
    std::vector<String> texts;
    for (Long i = 1; i <= entries->Count(); ++i) texts.push_back(CStr(entries->Item(i)));
    return texts;
  }

  TempDir dir_;
  std::filesystem::path store_;
  MessageBoxRecorder boxes_;
  std::unique_ptr<brindleway> shop_;
  String msg_;

 private:
  struct Connection {
    explicit Connection(const std::filesystem::path& file) {
      sqlite3_open(file.c_str(), &handle);
      sqlite3_busy_timeout(handle, 5000);
    }
    ~Connection() { sqlite3_close(handle); }
    sqlite3* handle = nullptr;
  };
};

}  // namespace brindlewayProj::testing
