#include "GMutex.h"

#include <algorithm>
#include <chrono>

namespace {
constexpr unsigned int kForever = 0xFFFFFFFF;
}

GLockable::~GLockable() = default;

TModuleErrorCode GLockable::TryLockWithTimeout(unsigned int milliseconds) {
  constexpr unsigned int kLongestStep = 50;
  TModuleErrorCode result = TryLock();
  while (result == lock_codes::kBusy && milliseconds > 0) {
    const unsigned int step = std::min(milliseconds, kLongestStep);
    std::this_thread::sleep_for(std::chrono::milliseconds(step));
    milliseconds -= step;
    result = TryLock();
  }
  return result;
}

GMutex::GMutex() : GMutex(false) {}
GMutex::GMutex(bool recursive) : mRecursive(recursive) {}
GMutex::~GMutex() = default;
GRecursiveMutex::GRecursiveMutex() : GMutex(true) {}

TModuleErrorCode GMutex::Lock() { return LockInternal(kForever); }
TModuleErrorCode GMutex::TryLock() { return LockInternal(0); }
TModuleErrorCode GMutex::TryLockWithTimeout(unsigned int milliseconds) { return LockInternal(milliseconds); }

TModuleErrorCode GMutex::LockInternal(unsigned int timeout) {
  std::unique_lock lock(mMutex);
  const std::thread::id self = std::this_thread::get_id();
  if (mCount > 0 && mOwner == self) {
    if (!mRecursive) return lock_codes::kNotAvailable;
    ++mCount;
    return CoreErrorCodes::kSuccess;
  }
  const auto isFree = [this] { return mCount == 0; };
  if (timeout == kForever) {
    mCondition.wait(lock, isFree);
  } else if (!isFree()) {
    if (timeout == 0 || !mCondition.wait_for(lock, std::chrono::milliseconds(timeout), isFree)) return lock_codes::kBusy;
  }
  mCount = 1;
  mOwner = self;
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GMutex::Unlock() {
  const std::lock_guard lock(mMutex);
  if (mCount == 0 || mOwner != std::this_thread::get_id()) return lock_codes::kNotAvailable;
  if (--mCount == 0) {
    mOwner = std::thread::id();
    mCondition.notify_one();
  }
  return CoreErrorCodes::kSuccess;
}
