// Small helpers of the core library.
#pragma once

#include <ctime>

class GUtils {
 public:
  // The moment so many milliseconds from now, on the clock that the library's timed waits run by: the monotonic one, so
  // that a change of the time of day neither shortens nor prolongs a wait.
  static timespec FutureMillisecondsToAbsTime(unsigned int milliseconds);
};
