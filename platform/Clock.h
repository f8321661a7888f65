// The clocks of this system. A test, or a host that replays a script, replaces them by clocks that only it moves.
//
// There are two: the time of day, for people and for dates, which the user may set back or forth, and the steady clock,
// for intervals and timers, which only runs forward. Any thread.
#pragma once

#include <cstdint>

#include "platform/Export.h"

namespace platform {

class PLATFORM_API Clock {
 public:
  // The time of day in seconds since 1970-01-01 00:00 UTC.
  static double Now();
  static int64_t WholeSeconds();
  // The steady clock: seconds since some moment of the past that stays the same while the process lives.
  static double Steady();

  // From here on the steady clock stands at this value until it is set again. The time of day is the same value, or
  // stays as far from it as SetTimeOfDay made it.
  static void SetDriven(double now);
  // For driven clocks: sets the time of day alone, as a user does.
  static void SetTimeOfDay(double now);
  static void UseSystemTime();
  static bool IsDriven();
};

}  // namespace platform
