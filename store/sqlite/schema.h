// A new SQLite store file with the reference schema.
#pragma once

#include <filesystem>

namespace brindlewayProj::store::sqlite {

// See store::CreateStore.
void CreateStore(const std::filesystem::path& file, bool withSample);

}  // namespace brindlewayProj::store::sqlite
