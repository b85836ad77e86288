// Test-only: a backend connection that passes every call to a real one after a hook, which may
// fail the call (by throwing store::BackendError), count calls or interleave work of its own.
// The statements it hands out pass the hook on each Step too.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "store/backend.h"

namespace brindlewayProj::testing {

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
  store::RowId InsertRow(const store::SourceInfo& table,
                         std::span<const store::ColumnValue> values) override {
    return Inner("insert row into " + table.name).InsertRow(table, values);
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

// Every connection that a component opens from now on passes `before`; no hook restores the
// engine's own connections.
inline void HookStoreOperations(StoreHook before) {
  if (!before) return store::SetConnectionOpenerForTesting(nullptr);
  store::SetConnectionOpenerForTesting([before](const std::filesystem::path& file) {
    return std::make_shared<ForwardingConnection>(store::OpenEngineConnection(file), before);
  });
}

}  // namespace brindlewayProj::testing
