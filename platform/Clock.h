// The time of day. A test or a host that replays a script puts a time of its own in place of the system's.
#pragma once

#include <cstdint>

#include "platform/Export.h"

namespace platform {

class PLATFORM_API Clock {
 public:
  // Seconds since the epoch.
  static double Now();
  static int64_t WholeSeconds();

  // From here on Now() gives this value until it is set again; it never goes on by itself.
  static void SetDriven(double now);
  static void UseSystemTime();
  static bool IsDriven();
};

}  // namespace platform
