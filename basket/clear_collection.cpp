// ClearCollection: empties a caller's Collection from the front, one item a step, until the
// collection itself reports no items. Nothing is harmless; failures go to the caller's path.
#include <brindleway/brindleway.h>

namespace brindlewayProj {

void brindleway::ClearCollection(CollectionRef& colTarget) {
  if (colTarget == nullptr) return;
  while (Deref(colTarget).Count() >= 1) Deref(colTarget).Remove(Integer{1});
}

}  // namespace brindlewayProj
