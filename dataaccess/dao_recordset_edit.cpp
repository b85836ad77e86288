// Recordset changes: Edit, AddNew, Collect and Update on a dynaset over one table, through the
// backend's single-row operations. Update writes only the changed fields, and only if the row
// still holds what Edit read.
#include "dataaccess/dao_failures.h"
#include "dataaccess/dao_impl.h"
#include "platform/ascii.h"
#include "dataaccess/dao_values.h"
#include "store/errors.h"

namespace brindlewayProj::dao {
namespace {

using EditMode = Recordset::Impl::EditMode;

void CheckUpdatable(const Recordset::Impl& impl) {
  impl.CheckOpen();
  if (impl.snapshot) throw store::NotSupported();
  if (!impl.table) throw store::ReadOnly();
}

std::vector<std::string> ColumnNames(const Recordset::Impl& impl) {
  std::vector<std::string> names;
  names.reserve(impl.width);
  for (std::size_t i = 0; i < impl.width; ++i) names.push_back(impl.Column(i).name);
  return names;
}

// The current row as the table holds it now: as it was read while nothing can have changed it
// since, else read again; nullopt when it is gone.
std::optional<std::vector<store::SqlValue>> CurrentRowAsStored(Recordset::Impl& impl) {
  const auto row = static_cast<std::size_t>(impl.position);
  if (impl.session->RowsCurrent(impl.readStamp)) {
    auto first = impl.values.begin() + row * impl.width;
    return std::vector<store::SqlValue>(first, first + impl.width);
  }
  internal::WriteContext context{impl.session.get()};
  return internal::Guarded(
      [&] {
        return impl.session->Connection().ReadRow(*impl.table, ColumnNames(impl),
                                                  impl.rowIds[row]);
      },
      context);
}

void BeginEdit(Recordset::Impl& impl, EditMode mode) {
  impl.mode = mode;
  impl.changed.assign(impl.width, false);
  impl.editGeneration = impl.session->Generation();
}

// The changed fields of the buffer as column values.
std::vector<store::ColumnValue> ChangedValues(const Recordset::Impl& impl) {
  std::vector<store::ColumnValue> values;
  for (std::size_t i = 0; i < impl.width; ++i) {
    if (impl.changed[i]) values.push_back({impl.Column(i).name, impl.buffer[i]});
  }
  return values;
}

// Writes the changed fields; unless forced, only while the row still holds what Edit read.
long long StoreEdit(Recordset::Impl& impl, bool force, const internal::WriteContext& context) {
  std::vector<store::ColumnValue> changes = ChangedValues(impl);
  if (changes.empty()) return 1;
  std::vector<store::ColumnValue> expected;
  if (!force) {
    for (std::size_t i = 0; i < impl.width; ++i) {
      expected.push_back({impl.Column(i).name, impl.original[i]});
    }
  }
  const store::RowId& rowId = impl.rowIds[static_cast<std::size_t>(impl.position)];
  return internal::Guarded(
      [&] {
        auto& connection = impl.session->Connection();
        impl.session->NoteWrite();
        return connection.UpdateRow(*impl.table, rowId, changes, expected);
      },
      context);
}

// Adds the row with its written fields; unwritten fields take the table's defaults.
store::AddedRow StoreNewRow(Recordset::Impl& impl, const internal::WriteContext& context) {
  std::vector<store::ColumnValue> values = ChangedValues(impl);
  return internal::Guarded(
      [&] {
        auto& connection = impl.session->Connection();
        impl.session->NoteWrite();
        return connection.InsertRow(*impl.table, values, ColumnNames(impl));
      },
      context);
}

}  // namespace

void Recordset::Edit() {
  internal::WithQuery(impl_->source, [&] {
    CheckUpdatable(*impl_);
    if (Eof() || Bof()) throw store::NoCurrentRecord();
    auto row = static_cast<std::size_t>(impl_->position);
    auto current = CurrentRowAsStored(*impl_);
    if (!current) throw store::RecordDeleted();
    std::copy(current->begin(), current->end(), impl_->values.begin() + row * impl_->width);
    impl_->original = *current;
    impl_->buffer = std::move(*current);
    BeginEdit(*impl_, EditMode::kEdit);
  });
}

void Recordset::AddNew() {
  internal::WithQuery(impl_->source, [&] {
    CheckUpdatable(*impl_);
    impl_->DropEdit();
    impl_->buffer.assign(impl_->width, store::SqlValue{});
    BeginEdit(*impl_, EditMode::kAddNew);
    const auto& table = *impl_->table;
    if (table.integerKey.empty()) return;
    for (std::size_t i = 0; i < impl_->width; ++i) {
      if (!platform::EqualsIgnoringAsciiCase(impl_->Column(i).name, table.integerKey)) continue;
      internal::WriteContext context{impl_->session.get(), &table};
      impl_->buffer[i] =
          internal::Guarded([&] { return impl_->session->Connection().ReserveKey(table); }, context);
      impl_->changed[i] = true;
    }
  });
}

void Recordset::Collect(const String& name, const Variant& value) {
  impl_->CheckOpen();
  std::size_t column = impl_->ColumnIndex(name);
  if (impl_->mode == EditMode::kNone) throw store::UpdateWithoutEdit();
  impl_->buffer[column] = internal::FromVariant(value, impl_->Column(column).kind);
  impl_->changed[column] = true;
}

void Recordset::Update(Long /*updateType*/, bool force) {
  internal::WithQuery(impl_->source, [&] {
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
      impl_->Append(StoreNewRow(*impl_, context));
    }
    impl_->DropEdit();
  });
}

}  // namespace brindlewayProj::dao
