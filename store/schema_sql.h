// The SQL text of the reference schema and of the invented sample data.
#pragma once

namespace brindlewayProj::store {

extern const char* const kSchemaSql;
extern const char* const kSampleSql;

}  // namespace brindlewayProj::store
