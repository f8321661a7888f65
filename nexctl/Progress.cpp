#include "nexctl/Progress.h"

#include <unistd.h>

#include <cstdio>
#include <utility>

namespace nexctl {

namespace {
constexpr std::chrono::seconds kSilence(1);
}

Progress::Progress(std::string work) : work_(std::move(work)), isTerminal_(isatty(STDERR_FILENO) != 0) {}

Progress::~Progress() {
  if (isShown_) std::fprintf(stderr, "\r\033[K");
}

void Progress::Show(size_t step, size_t steps, const char* unit) {
  if (!isTerminal_ || std::chrono::steady_clock::now() - start_ <= kSilence) return;
  isShown_ = true;
  std::fprintf(stderr, "\r\033[K%s", work_.c_str());
  if (unit) std::fprintf(stderr, ": %zu of %zu %s", step, steps, unit);
}

}  // namespace nexctl
