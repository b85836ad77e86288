// The base of the objects a Variant can hold.
#include <brindleway/object.h>

#include <brindleway/variant.h>

namespace brindlewayProj {

Variant Object::DefaultValue() const { platform::Raise(platform::errObjectDoesNotSupport); }

}  // namespace brindlewayProj
