// A signal that one waiter takes (Signal), or that all waiters pass, later ones too, until Reset (Broadcast).
#pragma once

#include <condition_variable>
#include <mutex>

#include "ErrorCodes.h"

class GCondition {
 public:
  GCondition();
  virtual ~GCondition();
  GCondition(const GCondition&) = delete;
  GCondition& operator=(const GCondition&) = delete;

  TModuleErrorCode Wait();
  // lock_codes::kWaitTimedOut when the time ran out.
  TModuleErrorCode TimedWait(unsigned int milliseconds);
  TModuleErrorCode Signal();
  TModuleErrorCode Broadcast();
  TModuleErrorCode Reset();

 private:
  void TakeSignal();

  std::mutex mMutex;  // guards the two flags
  std::condition_variable mCondition;
  bool mSignalled = false;
  bool mAutoReset = true;
};
