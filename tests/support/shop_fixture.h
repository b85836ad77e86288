// Test-only tools for the order and basket methods: a fixture (customers 17 and 18, products 7
// and 8), one call of each store method, and a hook before every store operation.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <brindleway/brindleway.h>
#include <brindleway/hooks.h>
#include "store/backend.h"
#include "tests/support/test_support.h"

namespace brindlewayProj::testing {

// Every order, then every basket row, in the order of their keys.
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

  ComponentFolder dir_;
  std::filesystem::path store_;
  std::unique_ptr<brindleway> shop_;
  String msg_;
};

// The rows the calls work on.
struct SaleIds {
  Long customer;       // whose orders are listed, and who starts a new order
  Long order;          // read, bought, changed and added to
  Long product;        // in `order`'s basket: its quantity changed, looked up, removed
  Long otherProduct;   // bought into `order`
  String productName;  // the name of `product`
  Long orderToEmpty;   // RemoveFromBasket takes `product` out of it
  Long orderToDelete;
};

struct MethodCall {
  const char* name;
  std::function<Integer(brindleway&, String&)> call;
};

namespace method_calls {
// A fresh copy of an argument for each call, a collection included.
template <class T>
T Fresh(const T& value) {
  return value;
}
inline brindleway::CollectionRef Fresh(const brindleway::CollectionRef&) {
  return std::make_shared<Collection>();
}
template <class Method, class... Args>
MethodCall Make(const char* name, Method method, Args... args) {
  return {name, [=](brindleway& shop, String& msg) {
            auto copies = std::tuple(Fresh(args)...);
            return std::apply([&](auto&... a) { return method(shop, msg, a...); }, copies);
          }};
}
}  // namespace method_calls

// The first `count` of: the four methods with a transaction, the two deleters, the nine readers.
inline std::vector<MethodCall> StoreMethodCalls(const SaleIds& ids, std::size_t count = 15) {
#define METHOD(name) #name, [](brindleway & shop, auto&... a) { return shop.name(a...); }
  using method_calls::Make;
  const brindleway::CollectionRef list;
  const Long order = ids.order, product = ids.product, customer = ids.customer;
  const String separator = "; ";
  std::vector<MethodCall> calls{
      Make(METHOD(StartNewOrder), Long(0), customer, Variant(DateSerial(2026, 11, 2)), Variant(),
           Variant(Integer(0)), Variant("New")),
      Make(METHOD(ProductToBuy), order, ids.otherProduct, Long(2)),
      Make(METHOD(ModifyOrderQuantity), order, product, Variant(Long(5))),
      Make(METHOD(BuyAnOrder), order, DateSerial(2026, 11, 9), Integer(1)),
      Make(METHOD(RemoveFromBasket), ids.orderToEmpty, product),
      Make(METHOD(DeleteAnOrder), ids.orderToDelete),
      Make(METHOD(BasketList), list, order),
      Make(METHOD(GetOrderedProducts), list, order),
      Make(METHOD(BasketTable), std::shared_ptr<dao::Recordset>(), order),
      Make(METHOD(LookupOrderedProduct), String(), Long(0), ids.productName),
      Make(METHOD(QuantityOrdered), Long(0), order, product),
      Make(METHOD(ListOfOrders), list, separator, customer),
      Make(METHOD(ListOpenOrders), list, separator, customer, Integer(0)),
      Make(METHOD(ListShippedOrders), list, separator, customer),
      Make(METHOD(OrderDetail), Long(0), String(), String(), Date(), Date(), Integer(0), String(),
           order),
  };
#undef METHOD
  calls.resize(std::min(count, calls.size()));
  return calls;
}

// Runs before each store operation but Rollback, with a short description of it.
using StoreHook = std::function<void(const std::string& operation)>;

class ForwardingConnection : public store::Connection {
 public:
  ForwardingConnection(std::shared_ptr<store::Connection> inner, StoreHook before)
      : inner_(std::move(inner)), before_(std::move(before)) {}

  std::shared_ptr<store::Statement> Prepare(const std::string& sql) override {
    return std::make_shared<Statement>(Inner("prepare " + sql).Prepare(sql), before_, sql);
  }
  long long Execute(const std::string& sql, const std::vector<store::SqlValue>& values) override {
    return Inner("execute " + sql).Execute(sql, values);
  }
  std::optional<store::SourceInfo> Describe(const std::string& name) override {
    return Inner("describe " + name).Describe(name);
  }
  const store::SqlSyntax& Syntax() const override { return inner_->Syntax(); }
  std::optional<std::vector<store::SqlValue>> ReadRow(const store::SourceInfo& table,
                                                      std::span<const std::string> columns,
                                                      const store::RowId& row) override {
    return Inner("read row of " + table.name).ReadRow(table, columns, row);
  }
  long long UpdateRow(const store::SourceInfo& table, const store::RowId& row,
                      std::span<const store::ColumnValue> changes,
                      std::span<const store::ColumnValue> expected) override {
    return Inner("update row of " + table.name).UpdateRow(table, row, changes, expected);
  }
  store::AddedRow InsertRow(const store::SourceInfo& table,
                            std::span<const store::ColumnValue> values,
                            std::span<const std::string> columns) override {
    return Inner("insert row into " + table.name).InsertRow(table, values, columns);
  }
  bool ParentRowExists(const store::ForeignKey& key, const store::SqlValue& value) override {
    return Inner("look up parent " + key.parentTable).ParentRowExists(key, value);
  }
  std::int64_t ReserveKey(const store::SourceInfo& table) override {
    return Inner("reserve key of " + table.name).ReserveKey(table);
  }
  void Begin(int level) override { Inner("begin " + std::to_string(level)).Begin(level); }
  void Commit(int level) override { Inner("commit " + std::to_string(level)).Commit(level); }
  // Not hooked: a rollback is how every failure is cleaned up.
  void Rollback(int level) override { inner_->Rollback(level); }

 private:
  class Statement : public store::Statement {
   public:
    Statement(std::shared_ptr<store::Statement> inner, StoreHook before, const std::string& sql)
        : inner_(std::move(inner)), before_(std::move(before)), step_("step " + sql) {}
    std::shared_ptr<const std::vector<store::ColumnInfo>> Columns() const override {
      return inner_->Columns();
    }
    void Bind(const std::vector<store::SqlValue>& values) override { inner_->Bind(values); }
    bool Step() override {
      before_(step_);
      return inner_->Step();
    }
    store::SqlValue Column(int index) const override { return inner_->Column(index); }
    void Reset() override { inner_->Reset(); }

   private:
    std::shared_ptr<store::Statement> inner_;
    StoreHook before_;
    std::string step_;
  };

  store::Connection& Inner(const std::string& operation) {
    before_(operation);
    return *inner_;
  }

  std::shared_ptr<store::Connection> inner_;
  StoreHook before_;
};

// Every connection a component opens from now on passes `before`; no hook undoes it.
inline void HookStoreOperations(StoreHook before) {
  if (!before) return store::SetConnectionOpenerForTesting(nullptr);
  store::SetConnectionOpenerForTesting([before](const std::filesystem::path& file) {
    return std::make_shared<ForwardingConnection>(store::OpenEngineConnection(file), before);
  });
}

}  // namespace brindlewayProj::testing
