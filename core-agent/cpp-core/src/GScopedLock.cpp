#include "GScopedLock.h"

#include <utility>

#include "FailedCheck.h"

GLockStrategy::~GLockStrategy() = default;
TModuleErrorCode GLockStrategy::Unlock(GLockable& lockable) { return lockable.Unlock(); }
TModuleErrorCode GBlockingLockStrategy::Lock(GLockable& lockable) { return lockable.Lock(); }

GScopedLock::GScopedLock(GLockable& lockable, bool lockNow, std::unique_ptr<GLockStrategy> strategy)
    : mLockable(lockable), mStrategy(strategy ? std::move(strategy) : std::make_unique<GBlockingLockStrategy>()) {
  if (lockNow) Lock();
}

GScopedLock::~GScopedLock() {
  if (mLocked) Unlock();
}

bool GScopedLock::Lock() {
  if (mLocked) return true;
  const TModuleErrorCode code = mStrategy->Lock(mLockable);
  if (code != CoreErrorCodes::kSuccess) {
    ReportFailedCheck("Lockable", code, __FILE__, __LINE__, "mStrategy->Lock(mLockable)", GLogger::kDebug);
    return false;
  }
  mLocked = true;
  return true;
}

bool GScopedLock::Unlock() {
  const TModuleErrorCode code = mLocked ? mStrategy->Unlock(mLockable) : lock_codes::kNotAvailable;
  if (code != CoreErrorCodes::kSuccess) {
    ReportFailedCheck("Lockable", code, __FILE__, __LINE__, "mStrategy->Unlock(mLockable)", GLogger::kError);
    return false;
  }
  mLocked = false;
  return true;
}
