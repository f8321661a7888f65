// One instance of a class for the life of the process, created on first use. Thread-safe.
#pragma once

#include <atomic>
#include <mutex>

template <class T>
class GSingleton {
 public:
  static T* GetSharedInstance() {
    if (T* instance = sInstance.load(std::memory_order_acquire)) return instance;
    const std::lock_guard lock(sMutex);
    T* instance = sInstance.load(std::memory_order_relaxed);
    if (!instance) {
      instance = new T;
      sInstance.store(instance, std::memory_order_release);
    }
    return instance;
  }

 private:
  static inline std::mutex sMutex;
  static inline std::atomic<T*> sInstance{nullptr};
};
