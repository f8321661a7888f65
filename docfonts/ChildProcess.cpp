#include "docfonts/ChildProcess.h"

#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace docfonts {

std::error_code ChildProcess::Start(const std::function<void(int socket)>& serve) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return {errno, std::generic_category()};
  platform::Descriptor own(ends[0]), other(ends[1]);
  const pid_t parent = getpid();
  const pid_t process = fork();
  if (process < 0) return {errno, std::generic_category()};
  if (process > 0) {
    process_ = process;
    socket_ = std::move(own);
    return {};
  }
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  own.Close();
  if (getppid() == parent) serve(other.Get());
  // _exit, because this process must not write the parent's buffered output.
  _exit(0);
}

bool ChildProcess::HasEnded() const {
  siginfo_t info{};
  const int result = waitid(P_PID, static_cast<id_t>(process_), &info, WEXITED | WNOHANG | WNOWAIT);
  // Without it, somebody has waited for it already.
  return IsStarted() && (result != 0 || info.si_pid == process_);
}

int ChildProcess::Await() {
  socket_.Close();
  int status = 0;
  while (process_ != 0 && waitpid(process_, &status, 0) < 0 && errno == EINTR) {
  }
  process_ = 0;
  return status;
}

void ChildProcess::Kill() {
  if (process_ != 0) kill(process_, SIGKILL);
  Await();
}

void ChildProcess::Leave() {
  socket_.Close();
  process_ = 0;
}

}  // namespace docfonts
