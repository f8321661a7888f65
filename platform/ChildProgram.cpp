#include "platform/ChildProgram.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

extern char** environ;

namespace platform {

namespace {

// Owns the attributes and actions for posix_spawn.
class SpawnPlan {
 public:
  explicit SpawnPlan(int input) {
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
  }
  ~SpawnPlan() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;

  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
};

}  // namespace

bool ChildProgram::Start(std::string* problem) {
  int ends[2];
  int failure = socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0 ? 0 : errno;
  if (failure == 0) {
    socket_ = Descriptor(ends[0]);
    const Descriptor other(ends[1]);
    const SpawnPlan plan(other.Get());
    char* const arguments[] = {const_cast<char*>(program_.c_str()), nullptr};
    failure = posix_spawn(&process_, program_.c_str(), &plan.actions, &plan.attributes, arguments, environ);
  }
  owner_ = getpid();
  if (failure == 0) return true;
  process_ = 0;
  *problem = program_ + " can't be started: " + std::strerror(failure);
  return false;
}

bool ChildProgram::IsRunning() {
  if (process_ != 0 && owner_ != getpid()) Kill();
  if (process_ != 0 && waitpid(process_, nullptr, WNOHANG) != 0) process_ = 0;
  return process_ != 0;
}

void ChildProgram::Kill() {
  socket_.Close();
  if (process_ != 0 && owner_ == getpid()) {
    kill(process_, SIGKILL);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
  }
  process_ = 0;
}

bool ChildProgram::Reap(int& status) {
  kill(process_, SIGKILL);
  pid_t reaped = 0;
  while ((reaped = waitpid(process_, &status, 0)) < 0 && errno == EINTR) {
  }
  const bool isKnown = reaped == process_;
  process_ = 0;
  socket_.Close();
  return isKnown;
}

}  // namespace platform
