#include "GCondition.h"

#include <cerrno>

#include "GMutex.h"
#include "GUtils.h"

GCondition::GCondition() = default;
GCondition::~GCondition() = default;

// Waits for the signal and consumes it; null waits forever.
int GCondition::WaitForSignal(const timespec* end) {
  if (const int error = mSystem.Lock()) return error;
  int error = 0;
  while (error == 0 && !mSignalled) error = end ? mSystem.WaitUntil(*end) : mSystem.Wait();
  if (mSignalled) {
    error = 0;
    if (mAutoReset) mSignalled = false;
  }
  mSystem.Unlock();
  return error;
}

TModuleErrorCode GCondition::Wait() { return lock_codes::FromSystemError(WaitForSignal(nullptr)); }

TModuleErrorCode GCondition::TimedWait(unsigned int milliseconds) {
  const timespec end = GUtils::FutureMillisecondsToAbsTime(milliseconds);
  const int error = WaitForSignal(&end);
  if (error == 0) return CoreErrorCodes::kSuccess;
  return error == ETIMEDOUT ? lock_codes::kWaitTimedOut : lock_codes::kSystemFailure;
}

TModuleErrorCode GCondition::Signal() {
  if (const int error = mSystem.Lock()) return lock_codes::FromSystemError(error);
  mSignalled = true;
  const int result = mSystem.Signal();
  mSystem.Unlock();
  return lock_codes::FromSystemError(result);
}

TModuleErrorCode GCondition::Broadcast() {
  if (const int error = mSystem.Lock()) return lock_codes::FromSystemError(error);
  mSignalled = true;
  mAutoReset = false;
  const int result = mSystem.Broadcast();
  mSystem.Unlock();
  return lock_codes::FromSystemError(result);
}

TModuleErrorCode GCondition::Reset() {
  if (const int error = mSystem.Lock()) return lock_codes::FromSystemError(error);
  mSignalled = false;
  mAutoReset = true;
  mSystem.Unlock();
  return CoreErrorCodes::kSuccess;
}
