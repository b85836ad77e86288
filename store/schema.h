// The reference schema of a store file, and the invented sample data that demos and tests use.
#pragma once

#include <filesystem>

namespace brindlewayProj::store {

// Writes a new store with the reference tables, indexes and views; with `withSample` also
// invented customers, products and a few orders with baskets. `file` is a file path, or a
// connection URI of an empty PostgreSQL database. An existing file, or a database that holds
// tables already, is never overwritten: that raises a platform::Error and leaves it as it was.
void CreateStore(const std::filesystem::path& file, bool withSample);

}  // namespace brindlewayProj::store
