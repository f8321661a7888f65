#include "host/console/Signals.h"

#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>

#include "platform/RunLoop.h"

namespace console {

namespace {

constexpr int kEnding[] = {SIGINT, SIGTERM, SIGHUP};

// The data that the signal handler may use.
std::atomic<int> sEnd, sWake;
std::atomic<bool> sHasUser, sInterrupted, sStopped, sContinued, sResized;

void SetHandler(int signal, void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigaction(signal, &action, nullptr);
}

void Take(int signal) {
  const int error = errno;
  switch (signal) {
    case SIGPIPE: break;
    case SIGTSTP: sStopped = true; break;
    case SIGCONT: sContinued = true; break;
    case SIGWINCH: sResized = true; break;
    case SIGINT:
      if (sHasUser) {
        sInterrupted = true;
        break;
      }
      [[fallthrough]];
    default:
      sEnd = signal;
      // The next signal ends the process, even if it hangs.
      for (const int ending : kEnding) SetHandler(ending, SIG_DFL);
  }
  const uint64_t one = 1;
  [[maybe_unused]] const ssize_t written = write(sWake, &one, sizeof one);
  errno = error;
}

}  // namespace

Signals::Signals() : wake_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
  sEnd = 0;
  sHasUser = sInterrupted = sStopped = sContinued = sResized = false;
  sWake = wake_.Get();
  platform::RunLoop::Main().WatchDescriptor(wake_.Get(), [this] {
    if (EndAsked() != 0 || IsInterrupted()) {
      platform::RunLoop::Main().Stop();  // the descriptor stays readable, for the outer runs
    } else {
      Clear();
    }
  });
  for (const int ending : kEnding) {
    struct sigaction inherited = {};
    sigaction(ending, nullptr, &inherited);
    if (inherited.sa_handler != SIG_IGN) SetHandler(ending, &Take);  // with nohup, or in a background job
  }
  // Not ignored, because programs that we start would inherit that.
  for (const int other : {SIGPIPE, SIGCONT, SIGWINCH}) SetHandler(other, &Take);
}

Signals::~Signals() {
  for (const int taken : {SIGINT, SIGTERM, SIGHUP, SIGCONT, SIGWINCH, SIGTSTP}) SetHandler(taken, SIG_DFL);
  platform::RunLoop::Main().UnwatchDescriptor(wake_.Get());
  sWake = -1;
}

void Signals::SetUser(bool hasUser) { sHasUser = hasUser; }

int Signals::EndAsked() const { return sEnd; }
bool Signals::IsInterrupted() const { return sInterrupted; }

bool Signals::TakeInterrupt() {
  if (!sInterrupted.exchange(false)) return false;
  if (EndAsked() == 0) Clear();
  return true;
}

bool Signals::TakeStop() { return sStopped.exchange(false); }
bool Signals::TakeContinue() { return sContinued.exchange(false); }
bool Signals::TakeResize() { return sResized.exchange(false); }

bool Signals::HasNews() const { return EndAsked() != 0 || sInterrupted || sStopped || sContinued || sResized; }

void Signals::Clear() {
  uint64_t count = 0;
  [[maybe_unused]] const ssize_t drained = read(wake_.Get(), &count, sizeof count);
}

void Signals::SetEditing(bool isEditing) {
  isEditing_ = isEditing;
  SetHandler(SIGTSTP, isEditing ? &Take : SIG_DFL);
}

void Signals::StopProcess() {
  SetHandler(SIGTSTP, SIG_DFL);
  raise(SIGTSTP);
  SetEditing(isEditing_);
}

void EndBySignal(int signal) {
  SetHandler(signal, SIG_DFL);
  raise(signal);
  std::abort();  // reached if the signal is blocked
}

}  // namespace console
