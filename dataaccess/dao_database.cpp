// Database: opens recordsets on query texts and table names, and runs Delete statements.
#include "dataaccess/dao_failures.h"
#include "dataaccess/dao_impl.h"
#include "platform/ascii.h"
#include "store/dialect.h"
#include "store/errors.h"

namespace brindlewayProj::dao {
namespace {

namespace dialect = store::dialect;

internal::Session& OpenSession(const Database::Impl& impl) {
  if (!impl.session) throw store::ObjectInvalid();
  internal::CheckThread(impl.session->Owner());
  return *impl.session;
}

// The statement's source, once every name it uses is known: an unknown source raises 3078,
// unknown columns 3061 with their number.
const store::SourceInfo& CheckNames(internal::Session& session,
                                    const dialect::ParsedStatement& statement) {
  const store::SourceInfo* source = session.Describe(statement.source);
  if (!source) throw store::TableNotFound(statement.source);
  std::vector<std::string_view> unknown;
  for (const auto& name : statement.names) {
    auto known = [&](const store::ColumnInfo& column) {
      return platform::EqualsIgnoringAsciiCase(column.name, name);
    };
    auto seen = [&](std::string_view other) {
      return platform::EqualsIgnoringAsciiCase(other, name);
    };
    if (std::none_of(source->columns.begin(), source->columns.end(), known) &&
        std::none_of(unknown.begin(), unknown.end(), seen)) {
      unknown.push_back(name);
    }
  }
  if (!unknown.empty()) throw store::UnknownNames(static_cast<int>(unknown.size()));
  return *source;
}

// Opens `name` as a recordset of `type` on the database's session.
std::shared_ptr<Recordset> OpenOn(const std::shared_ptr<internal::Session>& shared,
                                  const String& name, Long type) {
  internal::Session& session = *shared;
  auto statement = dialect::ParseRecordSource(name, session.Connection().Syntax());
  const auto& source = CheckNames(session, statement);
  auto recordset = std::make_shared<Recordset::Impl>();
  recordset->session = shared;
  recordset->source = name;
  recordset->snapshot = type == dbOpenSnapshot;
  bool updatable = !recordset->snapshot && source.isTable && !statement.distinct;
  if (updatable) recordset->table = &source;
  recordset->firstColumn = updatable ? 1 : 0;
  std::string sql =
      dialect::SelectSql(statement, updatable, session.Connection().Syntax(), &source);
  internal::WriteContext context{&session};
  auto prepared = internal::Guarded([&] { return session.Connection().Prepare(sql); }, context);
  recordset->Load(std::move(prepared), statement.parameters,
                  updatable && statement.where.empty());
  return std::make_shared<Recordset>(std::move(recordset));
}

// Runs the Delete statement `query` all or nothing and answers the rows it deleted.
long long DeleteOn(internal::Session& session, const String& query) {
  auto statement = dialect::Parse(query, session.Connection().Syntax());
  if (statement.kind != dialect::StatementKind::kDelete) throw store::CannotExecuteSelect();
  const auto& source = CheckNames(session, statement);
  if (!source.isTable) throw store::ReadOnly();
  internal::WriteContext context{&session, &source};
  context.deleting = true;
  // One statement is atomic in the backend: all of its rows go, or none.
  return internal::Guarded(
      [&] {
        auto& connection = session.Connection();
        session.NoteWrite();
        return connection.Execute(dialect::DeleteSql(statement, connection.Syntax()),
                                  statement.parameters);
      },
      context);
}

}  // namespace

Database::Database(std::shared_ptr<Impl> impl) : impl_(std::move(impl)) {}

Database::~Database() = default;

std::shared_ptr<Recordset> Database::OpenRecordset(const String& name, Long type) {
  OpenSession(*impl_);
  if (type != dbOpenDynaset && type != dbOpenSnapshot) throw store::InvalidArgument();
  return internal::WithQuery(name, [&] { return OpenOn(impl_->session, name, type); });
}

void Database::Execute(const String& query, Long /*options*/) {
  auto& session = OpenSession(*impl_);
  impl_->recordsAffected = 0;
  impl_->recordsAffected =
      static_cast<Long>(internal::WithQuery(query, [&] { return DeleteOn(session, query); }));
}

Long Database::RecordsAffected() const {
  OpenSession(*impl_);
  return impl_->recordsAffected;
}

String Database::Name() const {
  OpenSession(*impl_);
  return impl_->name;
}

void Database::Close() {
  OpenSession(*impl_);
  impl_->session.reset();
}

}  // namespace brindlewayProj::dao
