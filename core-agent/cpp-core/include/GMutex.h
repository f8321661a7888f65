// Locks that know their owner and report instead of blocking for ever or throwing.
//
// Codes: 0 the lock is held; kNotAvailable this thread can't have it (a plain mutex locked again by its owner, an
// unlock by a thread that does not own it); kBusy another thread has it and the time is used up.
#pragma once

#include <pthread.h>

#include "ErrorCodes.h"
#include "GSystemLock.h"

namespace lock_codes {
inline constexpr TModuleErrorCode kNotAvailable = 0x0100100B;
inline constexpr TModuleErrorCode kBusy = 0x0100100C;
inline constexpr TModuleErrorCode kWaitTimedOut = 0x0100100D;
inline constexpr TModuleErrorCode kInvalid = 0x0200100B;
inline constexpr TModuleErrorCode kSystemFailure = 0x01000000;
inline constexpr TModuleErrorCode kFailedToAcquireLock = 0x0100101D;

// The system's ETIMEDOUT, EAGAIN and EINVAL as kBusy, kNotAvailable and kInvalid, any other failure as kSystemFailure.
TModuleErrorCode FromSystemError(int error);
}  // namespace lock_codes

class GLockable {
 public:
  virtual ~GLockable();
  virtual TModuleErrorCode Lock() = 0;
  virtual TModuleErrorCode TryLock() = 0;
  // 0 tries once. The form here tries again in steps of at most 50 milliseconds while the lock is busy.
  virtual TModuleErrorCode TryLockWithTimeout(unsigned int milliseconds);
  virtual TModuleErrorCode Unlock() = 0;
};

class GMutex : public GLockable {
 public:
  GMutex();
  ~GMutex() override;
  GMutex(const GMutex&) = delete;
  GMutex& operator=(const GMutex&) = delete;

  TModuleErrorCode Lock() override;
  TModuleErrorCode TryLock() override;
  TModuleErrorCode TryLockWithTimeout(unsigned int milliseconds) override;
  TModuleErrorCode Unlock() override;

 protected:
  explicit GMutex(bool recursive);

 private:
  TModuleErrorCode LockInternal(unsigned int timeout);
  TModuleErrorCode Take(unsigned int timeout);
  TModuleErrorCode WaitUntilFree(unsigned int timeout);
  bool IsOwner() const { return mCount > 0 && pthread_equal(mOwner, pthread_self()); }

  // Guards the count and the owner only; it is never held while the owner's critical section runs.
  GSystemLock mSystem;
  unsigned int mCount = 0;
  bool mRecursive;
  pthread_t mOwner{};  // means something while the count is above 0
};

class GRecursiveMutex : public GMutex {
 public:
  GRecursiveMutex();
};
