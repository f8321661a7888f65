// A static pointer to an object that one thread creates and deletes while other threads test whether it exists.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>

// Another thread that uses the object must ensure by other means that it is not deleted meanwhile. The object is not
// deleted at process exit, because its destructor may need statics that are gone by then.
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
