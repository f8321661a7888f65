#include "GSystem.h"

#include <atomic>
#include <csignal>

void GSystem::InitializeSockets() {
  static std::atomic<int> sCount{0};
  if (sCount.fetch_add(1) == 0) std::signal(SIGPIPE, SIG_IGN);
}
