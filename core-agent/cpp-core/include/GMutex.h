// Locks that know their owner and report errors instead of blocking forever or throwing.
//
// Codes: 0 locked; kNotAvailable this thread cannot lock it (a plain mutex locked again by its owner) or unlock it
// (owned by another thread); kBusy another thread owns it and the time is up.
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

// Maps ETIMEDOUT and EAGAIN and EINVAL of the system to kBusy, kNotAvailable and kInvalid, any other failure to
// kSystemFailure.
TModuleErrorCode FromSystemError(int error);
}  // namespace lock_codes

class GLockable {
 public:
  virtual ~GLockable();
  virtual TModuleErrorCode Lock() = 0;
  virtual TModuleErrorCode TryLock() = 0;
  // 0 tries once. This version tries again every 50 milliseconds or less while the lock is busy.
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

  // Guards only the count and the owner; never held during the owner's critical section.
  GSystemLock mSystem;
  unsigned int mCount = 0;
  bool mRecursive;
  pthread_t mOwner{};  // valid while the count is above 0
};

class GRecursiveMutex : public GMutex {
 public:
  GRecursiveMutex();
};
