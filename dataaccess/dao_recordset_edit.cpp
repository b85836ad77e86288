// Recordset changes: Edit, AddNew, Collect and Update on a dynaset over one table. Update
// writes only the changed fields, and only if the row still holds what Edit read.
#include "dataaccess/dao_failures.h"
#include "dataaccess/dao_impl.h"
#include "dataaccess/dao_values.h"
#include "store/dialect.h"
#include "store/errors.h"

namespace brindlewayProj::dao {
namespace {

using EditMode = Recordset::Impl::EditMode;
using store::dialect::AppendQuotedName;

void CheckUpdatable(const Recordset::Impl& impl) {
  impl.CheckOpen();
  if (impl.snapshot) throw store::NotSupported();
  if (!impl.table) throw store::ReadOnly();
}

std::string ColumnList(const Recordset::Impl& impl) {
  std::string list;
  for (std::size_t i = 0; i < impl.width; ++i) {
    if (i) list += ", ";
    AppendQuotedName(list, impl.Column(i).name);
  }
  return list;
}

// The row as the table holds it now; false when it is gone.
bool ReadRow(Recordset::Impl& impl, std::int64_t rowId, std::vector<store::SqlValue>& row) {
  std::string sql = "SELECT " + ColumnList(impl) + " FROM ";
  AppendQuotedName(sql, impl.table->name);
  sql += " WHERE rowid = ?";
  internal::WriteContext context{impl.session.get()};
  return internal::Guarded(
      [&] {
        auto& statement = impl.session->Connection().Prepare(sql);
        statement.Bind({rowId});
        bool found = statement.Step();
        if (found) {
          row.clear();
          for (std::size_t i = 0; i < impl.width; ++i) {
            row.push_back(statement.Column(static_cast<int>(i)));
          }
        }
        statement.Reset();
        return found;
      },
      context);
}

void BeginEdit(Recordset::Impl& impl, EditMode mode) {
  impl.mode = mode;
  impl.changed.assign(impl.width, false);
  impl.editGeneration = impl.session->Generation();
}

long long StoreEdit(Recordset::Impl& impl, bool force, const internal::WriteContext& context) {
  std::string sql = "UPDATE ";
  AppendQuotedName(sql, impl.table->name);
  sql += " SET ";
  std::vector<store::SqlValue> parameters;
  for (std::size_t i = 0; i < impl.width; ++i) {
    if (!impl.changed[i]) continue;
    if (!parameters.empty()) sql += ", ";
    AppendQuotedName(sql, impl.Column(i).name);
    sql += " = ?";
    parameters.push_back(impl.buffer[i]);
  }
  if (parameters.empty()) return 1;
  sql += " WHERE rowid = ?";
  parameters.emplace_back(std::in_place_type<std::int64_t>,
                          impl.rowIds[static_cast<std::size_t>(impl.position)]);
  if (!force) {  // refuse the write if someone changed the row since Edit read it
    for (std::size_t i = 0; i < impl.width; ++i) {
      sql += " AND ";
      AppendQuotedName(sql, impl.Column(i).name);
      sql += " IS ?";
      parameters.push_back(impl.original[i]);
    }
  }
  return internal::Guarded([&] { return impl.session->Connection().Execute(sql, parameters); },
                           context);
}

std::int64_t StoreNewRow(Recordset::Impl& impl, const internal::WriteContext& context) {
  std::string sql = "INSERT INTO ";
  AppendQuotedName(sql, impl.table->name);
  std::string names, placeholders;
  std::vector<store::SqlValue> parameters;
  for (std::size_t i = 0; i < impl.width; ++i) {
    if (!impl.changed[i]) continue;  // unwritten fields take the table's defaults
    if (!parameters.empty()) names += ", ", placeholders += ", ";
    AppendQuotedName(names, impl.Column(i).name);
    placeholders += '?';
    parameters.push_back(impl.buffer[i]);
  }
  sql += parameters.empty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + placeholders + ")";
  return internal::Guarded(
      [&] {
        impl.session->Connection().Execute(sql, parameters);
        return impl.session->Connection().LastRowId();
      },
      context);
}

}  // namespace

void Recordset::Edit() {
  CheckUpdatable(*impl_);
  if (Eof() || Bof()) throw store::NoCurrentRecord();
  auto row = static_cast<std::size_t>(impl_->position);
  std::vector<store::SqlValue> current;
  if (!ReadRow(*impl_, impl_->rowIds[row], current)) throw store::RecordDeleted();
  std::copy(current.begin(), current.end(), impl_->values.begin() + row * impl_->width);
  impl_->original = current;
  impl_->buffer = std::move(current);
  BeginEdit(*impl_, EditMode::kEdit);
}

void Recordset::AddNew() {
  CheckUpdatable(*impl_);
  impl_->DropEdit();
  impl_->buffer.assign(impl_->width, store::SqlValue{});
  BeginEdit(*impl_, EditMode::kAddNew);
  const auto& table = *impl_->table;
  if (!table.autoIncrement || table.integerKey.empty()) return;
  for (std::size_t i = 0; i < impl_->width; ++i) {
    if (!SameName(impl_->Column(i).name, table.integerKey)) continue;
    internal::WriteContext context{impl_->session.get(), &table};
    impl_->buffer[i] =
        internal::Guarded([&] { return impl_->session->Connection().ReserveKey(table); }, context);
    impl_->changed[i] = true;
  }
}

void Recordset::Collect(const String& name, const Variant& value) {
  impl_->CheckOpen();
  std::size_t column = impl_->ColumnIndex(name);
  if (impl_->mode == EditMode::kNone) throw store::UpdateWithoutEdit();
  impl_->buffer[column] = internal::FromVariant(value, impl_->Column(column).kind);
  impl_->changed[column] = true;
}

void Recordset::Update(Long /*updateType*/, bool force) {
  impl_->CheckOpen();
  if (impl_->mode == EditMode::kNone) throw store::UpdateWithoutEdit();
  if (impl_->editGeneration != impl_->session->Generation()) {
    impl_->DropEdit();  // its transaction was rolled back, and the edit with it
    throw store::UpdateWithoutEdit();
  }
  std::vector<store::ColumnInfo> columns(impl_->statementColumns->begin() + impl_->firstColumn,
                                         impl_->statementColumns->end());
  internal::WriteContext context{impl_->session.get(), impl_->table, &columns, &impl_->buffer};
  if (impl_->mode == EditMode::kEdit) {
    if (StoreEdit(*impl_, force, context) == 0) throw store::WriteConflict();
    auto row = static_cast<std::size_t>(impl_->position);
    std::copy(impl_->buffer.begin(), impl_->buffer.end(),
              impl_->values.begin() + row * impl_->width);
  } else {
    std::int64_t rowId = StoreNewRow(*impl_, context);
    std::vector<store::SqlValue> stored;
    if (!ReadRow(*impl_, rowId, stored)) stored = impl_->buffer;
    impl_->values.insert(impl_->values.end(), stored.begin(), stored.end());
    impl_->rowIds.push_back(rowId);
    ++impl_->rowCount;
    ++impl_->reached;
    if (impl_->position >= static_cast<std::ptrdiff_t>(impl_->rowCount) - 1) {
      impl_->position = static_cast<std::ptrdiff_t>(impl_->rowCount) - 1;
    }
  }
  impl_->DropEdit();
}

}  // namespace brindlewayProj::dao
