// The repeating timer that does the plug-in's work between host calls. It fires 100 times a second, also in modal
// loops, but not while the machine sleeps. Main thread only.
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
  void installTimer();  // does nothing if it is installed
  void uninstallTimer();

 private:
  Callback callback = nullptr;
  platform::RunLoopTimerRef timerRef;  // null while uninstalled
  int mPowerObserver = 0;
};
