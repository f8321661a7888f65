#include "GMutex.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>

#include "GUtils.h"

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

TModuleErrorCode lock_codes::FromSystemError(int error) {
  switch (error) {
    case 0: return CoreErrorCodes::kSuccess;
    case EAGAIN: return kNotAvailable;
    case ETIMEDOUT: return kBusy;
    case EINVAL: return kInvalid;
    default: return kSystemFailure;
  }
}

TModuleErrorCode GMutex::LockInternal(unsigned int timeout) {
  if (const int error = mSystem.Lock()) return lock_codes::FromSystemError(error);
  const TModuleErrorCode result = Take(timeout);
  mSystem.Unlock();
  return result;
}

TModuleErrorCode GMutex::Take(unsigned int timeout) {
  if (IsOwner()) {
    if (!mRecursive) return lock_codes::kNotAvailable;
    ++mCount;
    return CoreErrorCodes::kSuccess;
  }
  if (mCount > 0) {
    if (const TModuleErrorCode failure = WaitUntilFree(timeout)) return failure;
  }
  mCount = 1;
  mOwner = pthread_self();
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GMutex::WaitUntilFree(unsigned int timeout) {
  if (timeout == 0) return lock_codes::kBusy;
  int error = 0;
  if (timeout == kForever) {
    while (error == 0 && mCount > 0) error = mSystem.Wait();
  } else {
    const timespec end = GUtils::FutureMillisecondsToAbsTime(timeout);
    while (error == 0 && mCount > 0) error = mSystem.WaitUntil(end);
  }
  return mCount == 0 ? CoreErrorCodes::kSuccess : lock_codes::FromSystemError(error);
}

TModuleErrorCode GMutex::Unlock() {
  if (const int error = mSystem.Lock()) return lock_codes::FromSystemError(error);
  TModuleErrorCode result = lock_codes::kNotAvailable;
  if (IsOwner()) {
    if (--mCount == 0) mSystem.Signal();
    result = CoreErrorCodes::kSuccess;
  }
  mSystem.Unlock();
  return result;
}
