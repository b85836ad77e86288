// The base of the objects a Variant can hold.
#include "dataaccess/object.h"

#include "dataaccess/variant.h"

namespace brindlewayProj {

Variant Object::DefaultValue() const { platform::Raise(platform::errObjectDoesNotSupport); }

}  // namespace brindlewayProj
