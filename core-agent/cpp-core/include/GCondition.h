// A signal that one waiter takes (Signal), or that all waiters pass, later ones too, until Reset (Broadcast).
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
  // lock_codes::kWaitTimedOut when the time ran out, lock_codes::kSystemFailure on any other failure.
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
