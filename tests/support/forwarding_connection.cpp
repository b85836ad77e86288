// The statements of a ForwardingConnection, whose Bind and Step pass its hook.
#include "tests/support/forwarding_connection.h"

namespace brindlewayProj::testing {
namespace {

class ForwardingStatement : public store::Statement {
 public:
  ForwardingStatement(std::shared_ptr<store::Statement> inner, ForwardingConnection& connection,
                      std::string sql)
      : inner_(std::move(inner)), connection_(connection), sql_(std::move(sql)) {}
  std::shared_ptr<const std::vector<store::ColumnInfo>> Columns() const override {
    return inner_->Columns();
  }
  void Bind(const std::vector<store::SqlValue>& values) override { inner_->Bind(values); }
  bool Step() override {
    connection_.Before("step " + sql_);
    return inner_->Step();
  }
  store::SqlValue Column(int index) const override { return inner_->Column(index); }
  void Reset() override { inner_->Reset(); }

 private:
  std::shared_ptr<store::Statement> inner_;
  ForwardingConnection& connection_;
  std::string sql_;
};

}  // namespace

std::shared_ptr<store::Statement> ForwardingConnection::Prepare(const std::string& sql) {
  Before("prepare " + sql);
  return std::make_shared<ForwardingStatement>(inner_->Prepare(sql), *this, sql);
}

}  // namespace brindlewayProj::testing
