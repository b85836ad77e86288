// Collection: an ordered list of Variants numbered from 1.
#include <brindleway/collection.h>

namespace brindlewayProj {
namespace {

size_t Position(Long index, size_t count) {
  if (index < 1 || static_cast<size_t>(index) > count) {
    platform::Raise(platform::errSubscriptOutOfRange);
  }
  return static_cast<size_t>(index - 1);
}

}  // namespace

Long Collection::Count() const { return static_cast<Long>(items_.size()); }

void Collection::Add(const Variant& item) { items_.push_back(item.Value()); }

Variant Collection::Item(Long index) const { return items_[Position(index, items_.size())]; }

void Collection::Remove(Long index) {
  items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(Position(index, items_.size())));
}

}  // namespace brindlewayProj
