#include "platform/Clock.h"

#include <atomic>
#include <chrono>
#include <cmath>

namespace platform {

namespace {

// NaN while the system's clocks are used.
std::atomic<double> sDriven{std::nan("")};
// The time of day minus the steady clock, while they are driven.
std::atomic<double> sDrivenOffset{0};

template <class SystemClock>
double SecondsOf() {
  return std::chrono::duration<double>(SystemClock::now().time_since_epoch()).count();
}

}  // namespace

double Clock::Now() {
  const double driven = sDriven.load();
  return std::isnan(driven) ? SecondsOf<std::chrono::system_clock>() : driven + sDrivenOffset.load();
}

double Clock::Steady() {
  const double driven = sDriven.load();
  return std::isnan(driven) ? SecondsOf<std::chrono::steady_clock>() : driven;
}

int64_t Clock::WholeSeconds() { return static_cast<int64_t>(std::floor(Now())); }
void Clock::SetDriven(double now) { sDriven.store(now); }
void Clock::SetTimeOfDay(double now) { sDrivenOffset.store(now - sDriven.load()); }
void Clock::UseSystemTime() {
  sDriven.store(std::nan(""));
  sDrivenOffset.store(0);
}
bool Clock::IsDriven() { return !std::isnan(sDriven.load()); }

}  // namespace platform
