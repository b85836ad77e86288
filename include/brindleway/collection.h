// Collection: the caller's ordered list of Variants, numbered from 1.
#pragma once

#include <deque>

#include <brindleway/export.h>
#include <brindleway/variant.h>

namespace brindlewayProj {

class BRINDLEWAY_API Collection : public Object {
 public:
  Long Count() const;
  // Appends a copy of the value (a reference is read out first).
  void Add(const Variant& item);
  // The entry at `index` (from 1); out of range raises 9 "Subscript out of range".
  Variant Item(Long index) const;
  // Takes out the entry at `index` and moves the rest up; out of range raises 9.
  void Remove(Long index);

 private:
  std::deque<Variant> items_;
};

}  // namespace brindlewayProj
