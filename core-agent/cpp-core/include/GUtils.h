// Helpers of the core library.
#pragma once

#include <ctime>

class GUtils {
 public:
  // Returns the time that is so many milliseconds from now, on the monotonic clock, which the timed waits use: setting
  // the time of day changes no wait.
  static timespec FutureMillisecondsToAbsTime(unsigned int milliseconds);
};
