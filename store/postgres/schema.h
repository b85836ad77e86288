// The reference schema in an empty PostgreSQL database.
#pragma once

#include <string>

namespace brindlewayProj::store::postgres {

// The reference tables, indexes and views as SQL.
extern const char* const kSchemaSql;

// See store::CreateStore; `uri` names a database that holds no table or view yet.
void CreateStore(const std::string& uri, bool withSample);

}  // namespace brindlewayProj::store::postgres
