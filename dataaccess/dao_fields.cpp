// Fields and Field: the columns of a recordset's current row, by name or position. The Field
// objects are made once per recordset, so that reading a value allocates nothing but the value.
#include "dataaccess/dao_impl.h"
#include "dataaccess/dao_values.h"
#include "store/errors.h"

namespace brindlewayProj::dao {
namespace {

std::shared_ptr<Recordset::Impl> Lock(const std::weak_ptr<Recordset::Impl>& recordset) {
  auto locked = recordset.lock();
  if (!locked) throw store::ObjectInvalid();
  locked->CheckOpen();
  return locked;
}

// The Field of a column that exists, made on first need.
const std::shared_ptr<Field>& ItemAt(Fields::Impl& fields, std::size_t column) {
  auto& item = fields.items[column];
  if (!item) {
    item = std::make_shared<Field>(std::make_shared<Field::Impl>(
        Field::Impl{fields.recordset, column}));
  }
  return item;
}

}  // namespace

Field::Field(std::shared_ptr<Impl> impl) : impl_(std::move(impl)) {}

String Field::Name() const { return Lock(impl_->recordset)->Column(impl_->column).name; }

Variant Field::Value() const {
  auto recordset = Lock(impl_->recordset);
  return internal::ToVariant(recordset->Shown(impl_->column),
                             recordset->Column(impl_->column).kind);
}

Fields::Fields(std::shared_ptr<Impl> impl) : impl_(std::move(impl)) {}

Long Fields::Count() const { return static_cast<Long>(Lock(impl_->recordset)->width); }

std::shared_ptr<Field> Fields::Item(const String& name) const {
  return ItemAt(*impl_, Lock(impl_->recordset)->ColumnIndex(name));
}

std::shared_ptr<Field> Fields::Item(Long index) const {
  auto recordset = Lock(impl_->recordset);
  if (index < 0 || static_cast<std::size_t>(index) >= recordset->width) {
    throw store::ItemNotFound();
  }
  return ItemAt(*impl_, static_cast<std::size_t>(index));
}

}  // namespace brindlewayProj::dao
