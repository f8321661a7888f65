// The repeating timer that keeps the plug-in alive between host calls: 100 times a second, also in modal loops, and not
// while the machine sleeps. Main thread only.
#pragma once

#include "platform/RunLoop.h"

class NotificationTimer {
 public:
  using Callback = void (*)(platform::RunLoopTimer& timer, void* info);

  NotificationTimer() = default;
  ~NotificationTimer();
  NotificationTimer(const NotificationTimer&) = delete;
  NotificationTimer& operator=(const NotificationTimer&) = delete;

  void initWithCallback(Callback callback);
  void installTimer();  // nothing if it is installed
  void uninstallTimer();

 private:
  Callback callback = nullptr;
  platform::RunLoopTimerRef timerRef;  // null while uninstalled
  int mPowerObserver = 0;
};
