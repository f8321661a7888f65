#include "GCondition.h"

#include <chrono>

#include "GMutex.h"

GCondition::GCondition() = default;
GCondition::~GCondition() = default;

void GCondition::TakeSignal() {
  if (mAutoReset) mSignalled = false;
}

TModuleErrorCode GCondition::Wait() {
  std::unique_lock lock(mMutex);
  mCondition.wait(lock, [this] { return mSignalled; });
  TakeSignal();
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GCondition::TimedWait(unsigned int milliseconds) {
  std::unique_lock lock(mMutex);
  const auto signalled = [this] { return mSignalled; };
  if (!mCondition.wait_for(lock, std::chrono::milliseconds(milliseconds), signalled)) return lock_codes::kWaitTimedOut;
  TakeSignal();
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GCondition::Signal() {
  const std::lock_guard lock(mMutex);
  mSignalled = true;
  mCondition.notify_one();
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GCondition::Broadcast() {
  const std::lock_guard lock(mMutex);
  mSignalled = true;
  mAutoReset = false;
  mCondition.notify_all();
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GCondition::Reset() {
  const std::lock_guard lock(mMutex);
  mSignalled = false;
  mAutoReset = true;
  return CoreErrorCodes::kSuccess;
}
