#include "GUtils.h"

timespec GUtils::FutureMillisecondsToAbsTime(unsigned int milliseconds) {
  constexpr long kNanosecondsPerMillisecond = 1'000'000, kNanosecondsPerSecond = 1'000'000'000;
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  time.tv_sec += milliseconds / 1000;
  time.tv_nsec += milliseconds % 1000 * kNanosecondsPerMillisecond;
  if (time.tv_nsec >= kNanosecondsPerSecond) {
    time.tv_nsec -= kNanosecondsPerSecond;
    ++time.tv_sec;
  }
  return time;
}
