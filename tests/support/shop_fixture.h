// Test-only fixture for the order and basket methods: a brindleway object connected to a fresh
// store file (customers 17 and 18, products 7 and 8), US English dates, and SQL run straight on
// the file through a connection of the test's own.
#pragma once

#include <gtest/gtest.h>

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

  void Sql(const std::string& statements) { SqlRows(store_, statements); }
  std::string Scalar(const std::string& query) { return SqlScalar(store_, query); }

  TempDir dir_;
  std::filesystem::path store_;
  MessageBoxRecorder boxes_;
  std::unique_ptr<brindleway> shop_;
  String msg_;
};

}  // namespace brindlewayProj::testing
