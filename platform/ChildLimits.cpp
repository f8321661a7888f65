#include "platform/ChildLimits.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <new>

#include "platform/Descriptor.h"

namespace platform {

namespace {

void Limit(__rlimit_resource resource, rlim_t soft, rlim_t hard) {
  const rlimit limit{soft, hard};
  setrlimit(resource, &limit);
}

}  // namespace

void LimitChild(uint64_t memory) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);  // a loop in a library must not outlive the parent
  std::signal(SIGXFSZ, SIG_IGN);     // the library sees a failed write instead
  Limit(RLIMIT_CORE, 0, 0);
  if (!kIsSanitized) {
    Limit(RLIMIT_AS, memory, memory);
    const Descriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
    dup2(nowhere.Get(), STDERR_FILENO);
  }
  std::set_new_handler([] { _exit(kChildOutOfMemory); });
}

void LimitChildTime(uint32_t seconds) {
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  const auto soFar = static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec);
  Limit(RLIMIT_CPU, soFar + seconds + 1, RLIM_INFINITY);
  alarm(kChildPatience * seconds + 1);
}

void EndChildTime() { alarm(0); }

}  // namespace platform
