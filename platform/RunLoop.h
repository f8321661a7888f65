// The event loop of a process: timers, callbacks posted from other threads, and descriptors to watch.
//
// Timers and watched descriptors belong to the thread that runs the loop; Post and Wake may be called from any.
// A callback may run the loop again (a modal loop). An exception that leaves a callback is reported on
// standard error and to the trace, and the loop goes on.
#pragma once

#include <functional>
#include <memory>

#include "platform/Export.h"

namespace platform {

enum class RunLoopMode : uint8_t {
  kDefault,  // ordinary events
  kModal,    // while a modal window or a menu is up
  kCommon,   // for timers only: fires in both
};

class RunLoop;

class RunLoopTimer;
// The loop and whoever holds a reference share the timer. A loop keeps the timers that were added to it.
using RunLoopTimerRef = std::shared_ptr<RunLoopTimer>;

// Times are those of Clock::Steady, so that a user who sets the clock neither stops a timer nor fires it early.
class PLATFORM_API RunLoopTimer {
 public:
  using Callback = std::function<void(RunLoopTimer&)>;

  // Fires once after so many seconds, and then every `interval` seconds if that is above 0.
  static RunLoopTimerRef After(double seconds, double interval, Callback callback);

  double NextFireDate() const { return nextFireDate_; }  // in seconds of Clock::Steady
  void FireAfter(double seconds);                        // from now on; replaces the next date
  bool IsValid() const { return valid_; }
  // The timer never fires again. It drops its callback once that has returned.
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

  // Any thread: runs the callback on the loop's thread, in whatever mode it is, in the order of posting.
  void Post(std::function<void()> callback);

  // Calls back while the descriptor is readable or hung up, until removed. The descriptor is not owned.
  void WatchDescriptor(int descriptor, std::function<void()> callback);
  void UnwatchDescriptor(int descriptor);

  // Runs for a number of seconds of Clock::Steady. With a driven clock it steps the clock from timer to timer, polls
  // descriptors and posted callbacks at each step without waiting, and returns with the clock at the end;
  // with the system's time it really waits. Stop ends it early.
  void RunFor(double seconds, RunLoopMode mode = RunLoopMode::kDefault);
  // Runs until the condition holds, or for at most so many seconds of real time; true if it holds. The condition is
  // tested before any wait and after each callback. A driven clock stands still meanwhile.
  bool RunUntil(const std::function<bool()>& condition, double mostRealSeconds,
                RunLoopMode mode = RunLoopMode::kDefault);
  // From a callback: ends the innermost run once the callback has returned; the runs around it go on.
  void Stop();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace platform
