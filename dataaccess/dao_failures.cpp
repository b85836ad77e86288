// Maps backend failures onto the store's error numbers and texts.
#include "dataaccess/dao_failures.h"

#include "dataaccess/dao_impl.h"
#include "platform/ascii.h"
#include "store/errors.h"

namespace brindlewayProj::dao::internal {
namespace {

// The parent table of the first reference in the row that has no row to refer to; the first
// referenced table when that cannot be told.
std::string MissingParent(const WriteContext& context) {
  const auto& keys = context.table->foreignKeys;
  if (keys.empty()) return context.table->name;
  if (context.session && context.columns && context.values) {
    for (const auto& key : keys) {
      for (std::size_t i = 0; i < context.columns->size(); ++i) {
        const auto& value = (*context.values)[i];
        if (!platform::EqualsIgnoringAsciiCase((*context.columns)[i].name, key.column) || store::IsSqlNull(value)) continue;
        try {
          if (!context.session->Connection().ParentRowExists(key, value)) return key.parentTable;
        } catch (const store::BackendError&) {
          return key.parentTable;
        }
      }
    }
  }
  return keys.front().parentTable;
}

// The store's error of a backend failure, without context.
platform::Error InStoreWords(const store::BackendError& failure, const WriteContext& context) {
  switch (failure.Kind()) {
    case store::FailureKind::kBusy:
      return store::Locked();
    case store::FailureKind::kFull:
      return store::DiskFull();
    case store::FailureKind::kReadOnly:
      return store::ReadOnly();
    case store::FailureKind::kUnique:
      return store::DuplicateKey();
    case store::FailureKind::kNotNull:
      return store::RequiredField(failure.Detail());
    case store::FailureKind::kForeignKey:
      if (context.deleting) return store::RelatedRecordsExist();
      if (!failure.Detail().empty()) return store::RelatedRecordRequired(failure.Detail());
      if (context.table) return store::RelatedRecordRequired(MissingParent(context));
      return store::EngineFailure(failure.what());
    case store::FailureKind::kNotADatabase:
      if (context.session) return store::UnrecognizedFormat(context.session->Path());
      return store::EngineFailure(failure.what());
    default:
      return store::EngineFailure(failure.what());
  }
}

}  // namespace

platform::Error Translate(const store::BackendError& failure, const WriteContext& context) {
  platform::Error error = InStoreWords(failure, context);
  return platform::Error(error.Number(), error.Description(),
                         {String(), static_cast<Long>(failure.EngineCode()), failure.what()});
}

}  // namespace brindlewayProj::dao::internal
