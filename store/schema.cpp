// A new store on the engine its name belongs to.
#include "store/schema.h"

#include "store/postgres/schema.h"
#include "store/sqlite/schema.h"
#include "store/store_name.h"

namespace brindlewayProj::store {

void CreateStore(const std::filesystem::path& file, bool withSample) {
  if (IsConnectionUri(file.native())) return postgres::CreateStore(file.native(), withSample);
  sqlite::CreateStore(file, withSample);
}

}  // namespace brindlewayProj::store
