// The one place where a message text gets its form: "<CompInfo: brindleway.Method> text".
#pragma once

#include <brindleway/variant.h>

namespace brindlewayProj::component {

// The tag of `level` (none for an unknown level), "brindleway.", the method's name, "> ", then
// `text` in its join form, or the current failure's description when `text` is missing.
String ComposeReturnMsg(const String& methodName, Byte level, const Variant& text);

}  // namespace brindlewayProj::component
