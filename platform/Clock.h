// The clocks. A test, or a host that replays a script, replaces them by clocks that only it advances.
//
// There are two: the time of day, for people and dates, which the user may change, and the steady clock, for intervals
// and timers, which only runs forward. Thread-safe.
#pragma once

#include <cstdint>

#include "platform/Export.h"

namespace platform {

class PLATFORM_API Clock {
 public:
  // The time of day in seconds since 1970-01-01 00:00 UTC.
  static double Now();
  static int64_t WholeSeconds();
  // The steady clock: seconds since a point in the past that stays the same for the life of the process.
  static double Steady();

  // Stops the steady clock at this value until it is set again. The time of day gets the same value, or keeps the
  // distance that SetTimeOfDay gave it.
  static void SetDriven(double now);
  // For driven clocks: sets the time of day alone, as a user does.
  static void SetTimeOfDay(double now);
  static void UseSystemTime();
  static bool IsDriven();
};

}  // namespace platform
