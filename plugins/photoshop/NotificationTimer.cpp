#include "photoshop/NotificationTimer.h"

#include "platform/Process.h"

namespace {
constexpr double kInterval = 0.01;  // seconds
}

NotificationTimer::~NotificationTimer() {
  uninstallTimer();
  if (mPowerObserver != 0) platform::RemovePowerObserver(mPowerObserver);
}

void NotificationTimer::initWithCallback(Callback function) {
  callback = function;
  installTimer();
  mPowerObserver = platform::AddPowerObserver([this](platform::PowerEvent event) {
    if (event == platform::PowerEvent::kWillSleep) {
      uninstallTimer();
    } else {
      installTimer();
    }
  });
}

void NotificationTimer::installTimer() {
  if (timerRef) return;
  timerRef = platform::RunLoopTimer::After(kInterval, kInterval,
                                           [this](platform::RunLoopTimer& timer) { callback(timer, nullptr); });
  platform::RunLoop::Main().AddTimer(timerRef, platform::RunLoopMode::kCommon);
}

void NotificationTimer::uninstallTimer() {
  if (!timerRef) return;
  timerRef->Invalidate();
  platform::RunLoop::Main().RemoveTimer(timerRef);
  timerRef.reset();
}
