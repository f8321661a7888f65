#include "GDateTime.h"

#include <cmath>
#include <cstdio>
#include <ctime>

#include "platform/Clock.h"

GDateTime GDateTime::Now() { return GDateTime(platform::Clock::Now()); }

std::string GDateTime::ToISO8601(bool withMilliseconds) const {
  const double whole = std::floor(mSeconds);
  const std::time_t seconds = static_cast<std::time_t>(whole);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  char text[64];
  const size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
  if (withMilliseconds) {
    const int milliseconds = static_cast<int>((mSeconds - whole) * 1000.0);
    std::snprintf(text + length, sizeof text - length, ".%03d", milliseconds);
  }
  return std::string(text) + "Z";
}
