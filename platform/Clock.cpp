#include "platform/Clock.h"

#include <atomic>
#include <chrono>
#include <cmath>

namespace platform {

namespace {
// Not a number while the system's time is used.
std::atomic<double> sDriven{std::nan("")};
}  // namespace

double Clock::Now() {
  const double driven = sDriven.load();
  if (!std::isnan(driven)) return driven;
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

int64_t Clock::WholeSeconds() { return static_cast<int64_t>(std::floor(Now())); }
void Clock::SetDriven(double now) { sDriven.store(now); }
void Clock::UseSystemTime() { sDriven.store(std::nan("")); }
bool Clock::IsDriven() { return !std::isnan(sDriven.load()); }

}  // namespace platform
