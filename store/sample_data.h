// The SQL text of the invented sample data that demos and tests use.
#pragma once

namespace brindlewayProj::store {

extern const char* const kSampleSql;

}  // namespace brindlewayProj::store
