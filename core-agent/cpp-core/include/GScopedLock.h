// Holds a lockable for a scope, by a strategy. It does not throw: whoever goes on without asking IsLocked may have no
// lock.
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
  // Takes the strategy over; null means a new GBlockingLockStrategy. The lockable must outlive the object.
  explicit GScopedLock(GLockable& lockable, bool lockNow = true, GLockStrategy* strategy = nullptr);
  ~GScopedLock();
  GScopedLock(const GScopedLock&) = delete;
  GScopedLock& operator=(const GScopedLock&) = delete;

  bool Lock();  // true at once if it already holds the lock
  bool Unlock();
  bool IsLocked() const { return mLocked; }

 private:
  GLockable& mLockable;
  bool mLocked = false;
  std::unique_ptr<GLockStrategy> mStrategy;
};
