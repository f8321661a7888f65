#include "platform/Waiting.h"

#include <thread>

namespace platform {

bool WaitUntil(std::chrono::milliseconds longest, const std::function<bool()>& condition,
               std::chrono::milliseconds pause) {
  const auto start = std::chrono::steady_clock::now();
  while (!condition()) {
    // kForever as nanoseconds would overflow.
    if (longest != kForever && std::chrono::steady_clock::now() - start >= longest) return false;
    std::this_thread::sleep_for(pause);
  }
  return true;
}

}  // namespace platform
