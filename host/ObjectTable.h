// The existing objects of one kind that the host has handed out as opaque pointers.
//
// The pointers are unique numbers, never addresses. So an object that was freed or has another kind is not found,
// whatever a plug-in does with its pointer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <utility>

namespace host {

// Unique in the process, also among different kinds.
uintptr_t NextObjectNumber();

template <class Opaque, class Object>
class ObjectTable {
 public:
  Opaque* Add(Object object) {
    const uintptr_t number = NextObjectNumber();
    objects_.emplace(number, std::move(object));
    return reinterpret_cast<Opaque*>(number);
  }
  // Returns null if there is none. Valid until the object is removed.
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
