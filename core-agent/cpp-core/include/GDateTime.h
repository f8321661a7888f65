// A moment, as far as the logger needs it.
#pragma once

#include <string>

class GDateTime {
 public:
  static GDateTime Now();
  // Seconds since the epoch.
  explicit GDateTime(double seconds) : mSeconds(seconds) {}
  // "2026-11-24T16:07:07Z", with milliseconds before the zone if asked for. Always UTC.
  std::string ToISO8601(bool withMilliseconds) const;

 private:
  double mSeconds;
};
