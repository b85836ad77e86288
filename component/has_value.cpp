// The component's test whether a value was really given: the data-access layer's HasValue,
// which also trims a text (and the caller's variable behind a reference) in place.
#include <brindleway/brindleway.h>

namespace brindlewayProj {

bool brindleway::HasValue(Variant& vValue) { return brindlewayProj::HasValue(vValue); }

}  // namespace brindlewayProj
