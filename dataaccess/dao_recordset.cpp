// Recordset: the picture of a query's rows, its current row and RecordCount.
#include <algorithm>

#include "dataaccess/dao_failures.h"
#include "dataaccess/dao_impl.h"
#include "platform/ascii.h"
#include "store/errors.h"

namespace brindlewayProj::dao {

std::size_t Recordset::Impl::ColumnIndex(std::string_view name) const {
  // Callers mostly spell a name as the store does, which a plain comparison finds soonest.
  for (std::size_t i = 0; i < width; ++i) {
    if (Column(i).name == name) return i;
  }
  for (std::size_t i = 0; i < width; ++i) {
    if (platform::EqualsIgnoringAsciiCase(Column(i).name, name)) return i;
  }
  throw store::ItemNotFound();
}

void Recordset::Impl::CheckOpen() const {
  if (!session) throw store::ObjectInvalid();
  internal::CheckThread(session->Owner());
}

void Recordset::Impl::CheckRows() {
  CheckOpen();
  ReadFirstRows();
}

void Recordset::Impl::ReadFirstRows() {
  if (started) return;
  started = true;
  readStamp = session->Stamp();
  ReadThrough(1);
  reached = rowCount ? 1 : 0;
  for (auto& row : addedUnstarted) AddToPicture(std::move(row));
  addedUnstarted.clear();
}

const store::SqlValue& Recordset::Impl::Shown(std::size_t column) {
  if (mode != EditMode::kNone) return buffer[column];
  ReadFirstRows();
  if (position < 0 || static_cast<std::size_t>(position) >= rowCount) {
    throw store::NoCurrentRecord();
  }
  return values[static_cast<std::size_t>(position) * width + column];
}

void Recordset::Impl::Load(std::shared_ptr<store::Statement> statement,
                           const std::vector<store::SqlValue>& parameters, bool deferred) {
  statementColumns = statement->Columns();
  width = statementColumns->size() - firstColumn;
  readStamp = session->Stamp();
  internal::WriteContext context{session.get()};
  internal::Guarded([&] { statement->Bind(parameters); }, context);
  cursor = std::move(statement);
  if (snapshot) {
    ReadAll();
  } else if (deferred) {
    started = false;
    return;
  } else {
    ReadThrough(1);
  }
  reached = rowCount ? 1 : 0;
}

void Recordset::Impl::Append(store::AddedRow row) {
  if (!row.values) row.values = buffer;
  if (cursor) added.push_back(row.id);  // the cursor may meet it again
  if (!started) {
    addedUnstarted.push_back(std::move(row));
    return;
  }
  AddToPicture(std::move(row));
}

void Recordset::Impl::AddToPicture(store::AddedRow row) {
  values.insert(values.end(), row.values->begin(), row.values->end());
  rowIds.push_back(std::move(row.id));
  ++rowCount;
  ++reached;
  if (position >= static_cast<std::ptrdiff_t>(rowCount) - 1) {
    position = static_cast<std::ptrdiff_t>(rowCount) - 1;
  }
}

// A failed step lets go of the cursor: the statement would start again from its first row.
void Recordset::Impl::ReadThrough(std::size_t index) {
  internal::WriteContext context{session.get()};
  while (cursor && rowCount <= index) {
    try {
      internal::Guarded(
          [&] {
            if (!cursor->Step()) {
              cursor.reset();  // all rows read: the statement goes back to the connection
              return;
            }
            if (firstColumn) {
              store::SqlValue rowId = cursor->Column(0);
              if (std::find(added.begin(), added.end(), rowId) != added.end()) return;
              rowIds.push_back(std::move(rowId));
            }
            if (values.size() + width > values.capacity()) MakeRoomFor(cursor->RowsReady() + 1);
            for (std::size_t i = 0; i < width; ++i) {
              values.push_back(cursor->Column(static_cast<int>(firstColumn + i)));
            }
            ++rowCount;
          },
          context);
    } catch (...) {
      cursor.reset();
      throw;
    }
  }
}

// A result that holds all its rows gets room for them in one piece: the picture of a long
// listing then neither grows by steps nor leaves its outgrown copies behind.
void Recordset::Impl::MakeRoomFor(std::size_t rows) {
  const std::size_t needed = values.size() + rows * width;
  if (needed > values.capacity()) values.reserve(std::max(needed, 2 * values.capacity()));
}

void Recordset::Impl::DropEdit() {
  mode = EditMode::kNone;
  buffer.clear();
  original.clear();
  changed.clear();
}

Recordset::Recordset(std::shared_ptr<Impl> impl) : impl_(std::move(impl)) {}

Recordset::~Recordset() = default;

Long Recordset::RecordCount() const {
  impl_->CheckRows();
  return static_cast<Long>(impl_->reached);
}

bool Recordset::Eof() const {
  impl_->CheckRows();
  if (impl_->position >= 0) impl_->ReadThrough(static_cast<std::size_t>(impl_->position));
  return impl_->rowCount == 0 || impl_->position >= static_cast<std::ptrdiff_t>(impl_->rowCount);
}

bool Recordset::Bof() const {
  impl_->CheckRows();
  return impl_->rowCount == 0 || impl_->position < 0;
}

void Recordset::MoveFirst() {
  impl_->CheckRows();
  if (impl_->rowCount == 0) throw store::NoCurrentRecord();
  impl_->DropEdit();
  impl_->position = 0;
}

void Recordset::MoveLast(Long /*options*/) {
  impl_->CheckRows();
  if (impl_->rowCount == 0) throw store::NoCurrentRecord();
  impl_->DropEdit();
  impl_->ReadAll();
  impl_->position = static_cast<std::ptrdiff_t>(impl_->rowCount) - 1;
  impl_->reached = impl_->rowCount;
}

void Recordset::MoveNext() {
  if (Eof()) throw store::NoCurrentRecord();
  impl_->DropEdit();
  ++impl_->position;
  impl_->ReadThrough(static_cast<std::size_t>(impl_->position) + 1);
  impl_->reached = std::max(
      impl_->reached, std::min(impl_->rowCount, static_cast<std::size_t>(impl_->position) + 1));
}

void Recordset::MovePrevious() {
  if (Bof()) throw store::NoCurrentRecord();
  impl_->DropEdit();
  --impl_->position;
}

std::shared_ptr<dao::Fields> Recordset::Fields() const {
  impl_->CheckOpen();
  if (!impl_->fields) {
    auto fields = std::make_shared<Fields::Impl>();
    fields->recordset = impl_;
    fields->items.resize(impl_->width);
    impl_->fields = std::make_shared<dao::Fields>(std::move(fields));
  }
  return impl_->fields;
}

void Recordset::Close() {
  impl_->CheckOpen();
  impl_->DropEdit();
  impl_->cursor.reset();
  impl_->session.reset();
  impl_->values.clear();
  impl_->rowIds.clear();
  impl_->rowCount = 0;
}

}  // namespace brindlewayProj::dao
