// Holds a lock until the end of the scope: `const GScopedLock lock(mMutex);`. A strategy decides how to lock; without
// one the constructor blocks until the lock is free.
//
// Never throws. A failure is logged under "Lockable" (Debug for a lock, Error for an unlock) and leaves IsLocked
// unchanged, so a caller that does not check IsLocked may run without the lock. Use an object on one thread only.
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
  // The lockable is not owned and must outlive this object. A null strategy means GBlockingLockStrategy.
  explicit GScopedLock(GLockable& lockable, bool lockNow = true, std::unique_ptr<GLockStrategy> strategy = nullptr);
  ~GScopedLock();  // unlocks if this object holds the lock
  GScopedLock(const GScopedLock&) = delete;
  GScopedLock& operator=(const GScopedLock&) = delete;

  bool Lock();    // true at once if this object is locked already
  bool Unlock();  // fails if this object is not locked
  bool IsLocked() const { return mLocked; }

 private:
  GLockable& mLockable;
  bool mLocked = false;
  std::unique_ptr<GLockStrategy> mStrategy;
};
