// Test-only: a backend connection that passes every call to a real one, with one hook before
// each call, so that tests can fail, count or interleave store operations. Statements handed
// out are wrapped as well, so that their Bind and Step pass the hook too.
#pragma once

#include <memory>
#include <string>

#include "store/backend.h"

namespace brindlewayProj::testing {

class ForwardingConnection : public store::Connection {
 public:
  explicit ForwardingConnection(std::shared_ptr<store::Connection> inner)
      : inner_(std::move(inner)) {}

  std::shared_ptr<store::Statement> Prepare(const std::string& sql) override;
  long long Execute(const std::string& sql, const std::vector<store::SqlValue>& values) override {
    Before("execute " + sql);
    return inner_->Execute(sql, values);
  }
  std::optional<store::SourceInfo> Describe(const std::string& name) override {
    Before("describe " + name);
    return inner_->Describe(name);
  }
  const store::SqlSyntax& Syntax() const override { return inner_->Syntax(); }
  std::optional<std::vector<store::SqlValue>> ReadRow(const store::SourceInfo& table,
                                                      std::span<const std::string> columns,
                                                      const store::RowId& row) override {
    Before("read row of " + table.name);
    return inner_->ReadRow(table, columns, row);
  }
  long long UpdateRow(const store::SourceInfo& table, const store::RowId& row,
                      std::span<const store::ColumnValue> changes,
                      std::span<const store::ColumnValue> expected) override {
    Before("update row of " + table.name);
    return inner_->UpdateRow(table, row, changes, expected);
  }
  store::AddedRow InsertRow(const store::SourceInfo& table,
                            std::span<const store::ColumnValue> values,
                            std::span<const std::string> columns) override {
    Before("insert row into " + table.name);
    return inner_->InsertRow(table, values, columns);
  }
  bool ParentRowExists(const store::ForeignKey& key, const store::SqlValue& value) override {
    Before("look up parent " + key.parentTable);
    return inner_->ParentRowExists(key, value);
  }
  std::int64_t ReserveKey(const store::SourceInfo& table) override {
    Before("reserve key of " + table.name);
    return inner_->ReserveKey(table);
  }
  void Begin(int level) override {
    Before("begin " + std::to_string(level));
    inner_->Begin(level);
  }
  void Commit(int level) override {
    Before("commit " + std::to_string(level));
    inner_->Commit(level);
  }
  // Not hooked: a rollback is how every failure is cleaned up.
  void Rollback(int level) override { inner_->Rollback(level); }

  // Runs before each operation but Rollback, with a short description of it; may throw
  // store::BackendError to fail the operation.
  virtual void Before(const std::string& operation) = 0;

 private:
  std::shared_ptr<store::Connection> inner_;
};

}  // namespace brindlewayProj::testing
