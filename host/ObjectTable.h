// The live objects of one kind that the host handed out as opaque pointers.
//
// What goes out is a number in the shape of a pointer, never an address, and no number is given twice: an object that was
// freed, or one of another kind, is not found, whatever a plug-in does with its pointer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <utility>

namespace host {

// Process-wide, so that numbers of different kinds differ too.
uintptr_t NextObjectNumber();

template <class Opaque, class Object>
class ObjectTable {
 public:
  Opaque* Add(Object object) {
    const uintptr_t number = NextObjectNumber();
    objects_.emplace(number, std::move(object));
    return reinterpret_cast<Opaque*>(number);
  }
  // Null if there is none; valid until the object is removed.
  Object* Find(const Opaque* opaque) {
    const auto found = objects_.find(reinterpret_cast<uintptr_t>(opaque));
    return found == objects_.end() ? nullptr : &found->second;
  }
  bool Remove(const Opaque* opaque) { return objects_.erase(reinterpret_cast<uintptr_t>(opaque)) != 0; }
  size_t Count() const { return objects_.size(); }
  void Clear() { objects_.clear(); }

 private:
  std::unordered_map<uintptr_t, Object> objects_;
};

}  // namespace host
