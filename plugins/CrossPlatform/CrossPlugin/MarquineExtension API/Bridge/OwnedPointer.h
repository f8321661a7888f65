// An object that one thread makes and ends while others look whether it is there. Made for statics.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>

// Whoever reads it on another thread than the owner's must know by other means that the object does not end meanwhile.
// An exit of the process leaves the object alone: its end may need what static destructors have taken away already.
template <class T>
class OwnedPointer {
 public:
  OwnedPointer() = default;
  OwnedPointer(const OwnedPointer&) = delete;
  OwnedPointer& operator=(const OwnedPointer&) = delete;

  OwnedPointer& operator=(std::unique_ptr<T> object) {
    delete mObject.exchange(object.release());
    return *this;
  }
  void reset() { delete mObject.exchange(nullptr); }
  T* get() const { return mObject; }
  T* operator->() const { return get(); }
  T& operator*() const { return *get(); }
  bool operator==(std::nullptr_t) const { return get() == nullptr; }
  explicit operator bool() const { return get() != nullptr; }

 private:
  std::atomic<T*> mObject{nullptr};
};
