// Waiting for other processes.
#pragma once

#include <chrono>
#include <functional>

#include "platform/Export.h"

namespace platform {

inline constexpr std::chrono::milliseconds kForever = std::chrono::milliseconds::max();

// Calls the condition at once and then after each pause, until it returns true or `longest` has passed. Returns its
// last result. Blocks the thread. Uses the system's clock even if platform/Clock.h is driven, because other processes
// do.
PLATFORM_API bool WaitUntil(std::chrono::milliseconds longest, const std::function<bool()>& condition,
                            std::chrono::milliseconds pause = std::chrono::milliseconds(10));

}  // namespace platform
