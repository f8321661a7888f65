// A condition. Signal wakes one waiter. Broadcast lets all waiters pass, including later ones, until Reset.
#pragma once

#include <ctime>

#include "ErrorCodes.h"
#include "GSystemLock.h"

class GCondition {
 public:
  GCondition();
  virtual ~GCondition();
  GCondition(const GCondition&) = delete;
  GCondition& operator=(const GCondition&) = delete;

  virtual TModuleErrorCode Wait();
  // Returns lock_codes::kWaitTimedOut when the time is up, lock_codes::kSystemFailure on any other failure.
  virtual TModuleErrorCode TimedWait(unsigned int milliseconds);
  virtual TModuleErrorCode Signal();
  virtual TModuleErrorCode Broadcast();
  virtual TModuleErrorCode Reset();

 private:
  int WaitForSignal(const timespec* end);

  GSystemLock mSystem;  // guards the two flags
  bool mSignalled = false;
  bool mAutoReset = true;
};
