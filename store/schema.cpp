// A new store on the engine its name belongs to.
#include "store/schema.h"

#include "store/sqlite/schema.h"

namespace brindlewayProj::store {

void CreateStore(const std::filesystem::path& file, bool withSample) {
  sqlite::CreateStore(file, withSample);
}

}  // namespace brindlewayProj::store
