// The event loop of a process: timers, callbacks posted from other threads, and descriptors to watch.
//
// Timers and watched descriptors belong to the thread that runs the loop. Post and Wake are thread-safe. A callback may
// run the loop again (a modal loop). An exception from a callback is reported to standard error and the trace, and the
// loop continues.
#pragma once

#include <functional>
#include <memory>

#include "platform/Export.h"

namespace platform {

enum class RunLoopMode : uint8_t {
  kDefault,  // ordinary events
  kModal,    // while a modal window or a menu is open
  kCommon,   // for timers only: in both modes
};

class RunLoop;

class RunLoopTimer;
// The loop and the holders of a reference share the timer. A loop keeps the timers that were added to it.
using RunLoopTimerRef = std::shared_ptr<RunLoopTimer>;

// Times are on Clock::Steady, so setting the time of day affects no timer.
class PLATFORM_API RunLoopTimer {
 public:
  using Callback = std::function<void(RunLoopTimer&)>;

  // Creates a timer that fires once after `seconds`, and then every `interval` seconds if that is above 0.
  static RunLoopTimerRef After(double seconds, double interval, Callback callback);

  double NextFireDate() const { return nextFireDate_; }  // in seconds of Clock::Steady
  void FireAfter(double seconds);                        // replaces the next date; counts from now
  bool IsValid() const { return valid_; }
  // Stops the timer for good. It releases its callback when that has returned.
  void Invalidate();

 private:
  friend class RunLoop;
  RunLoopTimer(double firstDate, double interval, Callback callback);
  double nextFireDate_;
  double interval_;
  bool valid_ = true;
  bool firing_ = false;
  Callback callback_;
};

class PLATFORM_API RunLoop {
 public:
  static RunLoop& Main();
  RunLoop();
  ~RunLoop();
  RunLoop(const RunLoop&) = delete;
  RunLoop& operator=(const RunLoop&) = delete;

  void AddTimer(const RunLoopTimerRef& timer, RunLoopMode mode);
  void RemoveTimer(const RunLoopTimerRef& timer);

  // Thread-safe. Runs the callback on the loop's thread, in any mode, in the order of posting.
  void Post(std::function<void()> callback);

  // Calls the callback while the descriptor is readable or hung up, until it is removed. Does not own the descriptor.
  void WatchDescriptor(int descriptor, std::function<void()> callback);
  void UnwatchDescriptor(int descriptor);

  // Runs for a number of seconds of Clock::Steady. With a driven clock it advances the clock from timer to timer, polls
  // descriptors and posted callbacks at each step without waiting, and returns with the clock at the end. With the
  // system's clock it really waits. Stop ends it early.
  void RunFor(double seconds, RunLoopMode mode = RunLoopMode::kDefault);
  // Runs until the condition is true, or for at most mostRealSeconds of real time. Returns whether the condition is
  // true. Tests it before each wait and after each callback. A driven clock stands still meanwhile.
  bool RunUntil(const std::function<bool()>& condition, double mostRealSeconds,
                RunLoopMode mode = RunLoopMode::kDefault);
  // Call from a callback: ends the innermost run when the callback has returned. Outer runs continue.
  void Stop();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace platform
