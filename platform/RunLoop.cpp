#include "platform/RunLoop.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <deque>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/Clock.h"
#include "platform/Descriptor.h"
#include "platform/Process.h"
#include "platform/Trace.h"

namespace platform {

namespace {

double RealSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// Like a desktop's event loop, reports an exception from a callback and continues: one bad callback must not end the
// host.
template <class Call>
void Guarded(const char* what, const Call& call) {
  std::string problem;
  try {
    call();
    return;
  } catch (const std::exception& error) {
    problem = error.what();
  } catch (...) {
    problem = "an exception of an unknown type";
  }
  ReportProblem(std::string("Exception left a ") + what + ": " + problem);
}

void LookForSleep(const RunLoop& loop) {
  if (&loop == &RunLoop::Main()) Guarded("power observer", [] { NoticeSleep(SecondsAsleep()); });
}

}  // namespace

RunLoopTimer::RunLoopTimer(double firstDate, double interval, Callback callback)
    : nextFireDate_(firstDate), interval_(interval), callback_(std::move(callback)) {}

RunLoopTimerRef RunLoopTimer::After(double seconds, double interval, Callback callback) {
  return RunLoopTimerRef(new RunLoopTimer(Clock::Steady() + seconds, interval, std::move(callback)));
}

void RunLoopTimer::FireAfter(double seconds) { nextFireDate_ = Clock::Steady() + seconds; }

void RunLoopTimer::Invalidate() {
  valid_ = false;
  if (!firing_) callback_ = nullptr;
}

struct RunLoop::State {
  struct Entry {
    RunLoopTimerRef timer;
    RunLoopMode mode;
  };
  std::vector<Entry> timers;
  std::map<int, std::function<void()>> descriptors;
  bool stopped = false;

  // One run of the loop. A stop ends only the innermost run.
  class Run {
   public:
    explicit Run(State& state) : state_(state), around_(std::exchange(state.stopped, false)) {}
    ~Run() { state_.stopped = around_; }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

   private:
    State& state_;
    bool around_;
  };

  std::mutex mutex;  // guards posted
  std::deque<std::function<void()>> posted;
  Descriptor wake{eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)};

  static bool RunsIn(const Entry& entry, RunLoopMode mode) {
    return entry.mode == RunLoopMode::kCommon || entry.mode == mode;
  }

  // The date of the next timer in this mode; infinity without one.
  double NextDate(RunLoopMode mode) const {
    double next = HUGE_VAL;
    for (const Entry& entry : timers) {
      if (entry.timer->IsValid() && !Firing(*entry.timer) && RunsIn(entry, mode)) {
        next = std::min(next, entry.timer->NextFireDate());
      }
    }
    return next;
  }

  static bool Firing(const RunLoopTimer& timer) { return timer.firing_; }

  bool Contains(const RunLoopTimerRef& timer) const {
    return std::any_of(timers.begin(), timers.end(), [&](const Entry& entry) { return entry.timer == timer; });
  }

  void FireDue(RunLoopMode mode) {
    const double now = Clock::Steady();
    std::vector<RunLoopTimerRef> due;
    for (const Entry& entry : timers) {
      const RunLoopTimer& timer = *entry.timer;
      if (timer.valid_ && !timer.firing_ && RunsIn(entry, mode) && timer.nextFireDate_ <= now)
        due.push_back(entry.timer);
    }
    std::stable_sort(due.begin(), due.end(),
                     [](const auto& a, const auto& b) { return a->nextFireDate_ < b->nextFireDate_; });
    for (const RunLoopTimerRef& timer : due) {
      // An earlier callback may have removed or postponed the timer.
      if (Contains(timer) && timer->nextFireDate_ <= now) Fire(*timer, now);
    }
    std::erase_if(timers, [](const Entry& entry) { return !entry.timer->valid_; });
  }

  static void Fire(RunLoopTimer& timer, double now) {
    if (!timer.valid_ || timer.firing_) return;
    if (timer.interval_ > 0) {
      // Missed dates are skipped.
      const double steps = std::floor((now - timer.nextFireDate_) / timer.interval_) + 1;
      timer.nextFireDate_ += std::max(1.0, steps) * timer.interval_;
    }
    timer.firing_ = true;
    Guarded("timer", [&] { timer.callback_(timer); });
    timer.firing_ = false;
    if (timer.interval_ <= 0) timer.valid_ = false;
    if (!timer.valid_) timer.callback_ = nullptr;
  }

  // Runs what has been posted so far, one by one, so that a callback that runs the loop again does not block the
  // others.
  void RunPosted() {
    std::unique_lock lock(mutex);
    for (size_t left = posted.size(); left > 0 && !posted.empty(); --left) {
      const std::function<void()> callback = std::move(posted.front());
      posted.pop_front();
      lock.unlock();
      Guarded("posted callback", callback);
      lock.lock();
    }
  }

  bool HasPosted() {
    const std::lock_guard lock(mutex);
    return !posted.empty();
  }

  void Wake() {
    const uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(wake.Get(), &one, sizeof one);
  }

  // Waits for a descriptor or a posted callback, at most `seconds`, and handles what is ready.
  void Poll(double seconds) {
    std::vector<pollfd> polled{{wake.Get(), POLLIN, 0}};
    for (const auto& [descriptor, callback] : descriptors) polled.push_back({descriptor, POLLIN, 0});
    // For callbacks left by an outer run, or posted by a callback, no wake-up is pending any more.
    if (HasPosted()) seconds = 0;
    const int milliseconds = static_cast<int>(std::clamp(std::ceil(seconds * 1000), 0.0, 60000.0));
    const int ready = poll(polled.data(), polled.size(), milliseconds);
    if (ready > 0 && polled[0].revents) {
      uint64_t count;
      [[maybe_unused]] const ssize_t drained = read(wake.Get(), &count, sizeof count);
    }
    for (size_t i = 1; ready > 0 && i < polled.size(); ++i) {
      if (!polled[i].revents) continue;
      const auto found = descriptors.find(polled[i].fd);
      if (found == descriptors.end()) continue;
      const auto callback = found->second;
      if (polled[i].revents & POLLNVAL) {
        // Closed by its owner but still watched: it would be ready forever.
        ReportProblem("The watched descriptor " + std::to_string(polled[i].fd) +
                      " is closed; it is not watched any more");
        descriptors.erase(found);
        continue;
      }
      Guarded("descriptor's callback", callback);
    }
    RunPosted();
  }
};

RunLoop& RunLoop::Main() {
  static RunLoop sMain;
  return sMain;
}

RunLoop::RunLoop() : state_(std::make_unique<State>()) {}
RunLoop::~RunLoop() = default;

void RunLoop::AddTimer(const RunLoopTimerRef& timer, RunLoopMode mode) { state_->timers.push_back({timer, mode}); }

void RunLoop::RemoveTimer(const RunLoopTimerRef& timer) {
  std::erase_if(state_->timers, [&](const State::Entry& entry) { return entry.timer == timer; });
}

void RunLoop::Post(std::function<void()> callback) {
  {
    const std::lock_guard lock(state_->mutex);
    state_->posted.push_back(std::move(callback));
  }
  state_->Wake();
}

void RunLoop::WatchDescriptor(int descriptor, std::function<void()> callback) {
  state_->descriptors[descriptor] = std::move(callback);
}

void RunLoop::UnwatchDescriptor(int descriptor) { state_->descriptors.erase(descriptor); }

void RunLoop::RunFor(double seconds, RunLoopMode mode) {
  const State::Run run(*state_);
  const double end = Clock::Steady() + seconds;
  for (;;) {
    state_->FireDue(mode);
    const double now = Clock::Steady();
    const double next = std::min(end, state_->NextDate(mode));
    state_->Poll(Clock::IsDriven() || state_->stopped || next <= now ? 0.0 : next - now);
    LookForSleep(*this);
    if (state_->stopped || Clock::Steady() >= end) break;
    if (Clock::IsDriven() && next > Clock::Steady()) Clock::SetDriven(next);
  }
  if (!state_->stopped) state_->FireDue(mode);
}

bool RunLoop::RunUntil(const std::function<bool()>& condition, double mostRealSeconds, RunLoopMode mode) {
  const State::Run run(*state_);
  const double end = RealSeconds() + mostRealSeconds;
  while (!condition()) {
    const double left = end - RealSeconds();
    if (left <= 0 || state_->stopped) return false;
    const double due = state_->NextDate(mode) - Clock::Steady();
    // A driven clock does not advance here, so only a timer that is already due ends the wait.
    const double next = Clock::IsDriven() && due > 0 ? left : std::min(left, due);
    state_->Poll(std::max(0.0, next));
    LookForSleep(*this);
    if (condition()) break;
    state_->FireDue(mode);
  }
  return true;
}

void RunLoop::Stop() { state_->stopped = true; }

}  // namespace platform
