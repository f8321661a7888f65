// Holds a lock for the length of a scope: `const GScopedLock lock(mMutex);`. A strategy decides how the lock is taken;
// without one the caller blocks until the lock is free.
//
// Never throws. A failure is logged under "Lockable" (Debug for a lock, Error for an unlock) and leaves IsLocked as it
// was, so a caller that goes on without asking IsLocked may run without the lock. One thread per object.
#pragma once

#include <memory>

#include "GMutex.h"

class GLockStrategy {
 public:
  virtual ~GLockStrategy();
  virtual TModuleErrorCode Lock(GLockable& lockable) = 0;
  virtual TModuleErrorCode Unlock(GLockable& lockable);
};

class GBlockingLockStrategy : public GLockStrategy {
 public:
  TModuleErrorCode Lock(GLockable& lockable) override;
};

class GScopedLock {
 public:
  // The lockable is not owned and must outlive the object. A null strategy stands for a GBlockingLockStrategy.
  explicit GScopedLock(GLockable& lockable, bool lockNow = true, std::unique_ptr<GLockStrategy> strategy = nullptr);
  ~GScopedLock();  // unlocks if this object holds the lock
  GScopedLock(const GScopedLock&) = delete;
  GScopedLock& operator=(const GScopedLock&) = delete;

  bool Lock();    // true at once if this object already holds the lock
  bool Unlock();  // fails without touching the lockable if this object does not hold the lock
  bool IsLocked() const { return mLocked; }

 private:
  GLockable& mLockable;
  bool mLocked = false;
  std::unique_ptr<GLockStrategy> mStrategy;
};
