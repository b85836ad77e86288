// The reference schema in an empty PostgreSQL database.
#pragma once

#include <string>

namespace brindlewayProj::store::postgres {

// See store::CreateStore; `uri` names a database that holds no table or view yet.
void CreateStore(const std::string& uri, bool withSample);

}  // namespace brindlewayProj::store::postgres
