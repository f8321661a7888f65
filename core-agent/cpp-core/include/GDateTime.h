// A point in time, with what the logger needs.
#pragma once

#include <string>

class GDateTime {
 public:
  static GDateTime Now();
  // Seconds since the epoch.
  explicit GDateTime(double seconds) : mSeconds(seconds) {}
  // Formats as "2026-11-24T16:07:07Z", optionally with milliseconds before the zone. Always UTC.
  std::string ToISO8601(bool withMilliseconds) const;

 private:
  double mSeconds;
};
