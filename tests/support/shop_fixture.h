// Test-only fixture for the order and basket methods: a brindleway object connected to a fresh
// store file (customers 17 and 18, products 7 and 8), US English dates, and SQL run straight on
// the file through a connection of the test's own.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include <brindleway/brindleway.h>
#include <brindleway/hooks.h>
#include "tests/support/test_support.h"

namespace brindlewayProj::testing {

// Every order, then every basket row, in the order of their keys: what a test compares a store
// with, before and after.
inline std::vector<SqlRow> OrdersAndBasket(const std::filesystem::path& store) {
  auto rows = SqlRows(store, "SELECT * FROM Orders ORDER BY OrderId");
  auto basket = SqlRows(store, "SELECT * FROM OrderBasket ORDER BY 1, 2, 3");
  rows.insert(rows.end(), basket.begin(), basket.end());
  return rows;
}

class ShopTest : public ::testing::Test {
 protected:
  ShopTest() : store_(MakeStore(dir_, false)) {
    Sql("INSERT INTO Customers VALUES (17, ' Ann', 'Lee'), (18, 'Bo', 'Kim');"
        "INSERT INTO Products VALUES (7, 'Tea', 'Leafco', 4.5), (8, ' Mug ', 'Clayworks', 9);");
    shop_ = std::make_unique<brindleway>();
  }

  void Sql(const std::string& statements) { SqlRows(store_, statements); }
  std::string Scalar(const std::string& query) { return SqlScalar(store_, query); }

  ComponentFolder dir_;
  std::filesystem::path store_;
  std::unique_ptr<brindleway> shop_;
  String msg_;
};

}  // namespace brindlewayProj::testing
