#include "with-fonts/ProgramRun.h"

#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <iterator>

#include "platform/Descriptor.h"

namespace with_fonts {

namespace {

// Passed on to the program. A terminal sends those of its keys to the program itself.
constexpr std::array kPassedOn = {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGUSR1, SIGUSR2, SIGTSTP};

// Blocks the signals that this process waits for, and restores the former mask at its end.
class BlockedSignals {
 public:
  BlockedSignals() {
    sigemptyset(&set_);
    for (const int signal : kPassedOn) sigaddset(&set_, signal);
    sigaddset(&set_, SIGCHLD);
    sigprocmask(SIG_BLOCK, &set_, &former_);
    signals_ = platform::Descriptor(signalfd(-1, &set_, SFD_CLOEXEC));
  }
  ~BlockedSignals() { sigprocmask(SIG_SETMASK, &former_, nullptr); }
  BlockedSignals(const BlockedSignals&) = delete;
  BlockedSignals& operator=(const BlockedSignals&) = delete;

  const sigset_t& Former() const { return former_; }
  // Returns the next signal, with its number 0 if none arrives before the descriptor is readable.
  signalfd_siginfo AwaitOr(int descriptor) const {
    pollfd events[] = {{signals_.Get(), POLLIN, 0}, {descriptor, POLLIN, 0}};
    signalfd_siginfo info{};
    poll(events, 2, -1);
    if (events[0].revents != 0 && read(signals_.Get(), &info, sizeof info) != sizeof info) info = {};
    return info;
  }

 private:
  sigset_t set_{}, former_{};
  platform::Descriptor signals_;
};

std::vector<char*> Pointers(const std::vector<std::string>& words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

// The environment with the variables in place of those of the same name.
std::vector<std::string> EnvironmentWith(const std::vector<std::string>& variables) {
  std::vector<std::string> all = variables;
  for (char** entry = environ; *entry; ++entry) {
    const std::string text = *entry;
    const std::string name = text.substr(0, text.find('=') + 1);
    bool isReplaced = false;
    for (const std::string& variable : variables) isReplaced = isReplaced || variable.starts_with(name);
    if (!isReplaced) all.push_back(text);
  }
  return all;
}

int Spawn(const std::vector<std::string>& words, const std::vector<std::string>& variables, const sigset_t& mask,
          pid_t* process) {
  const std::vector<std::string> environment = EnvironmentWith(variables);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigmask(&attributes, &mask);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  const int error = posix_spawnp(process, words[0].c_str(), nullptr, &attributes, Pointers(words).data(),
                                 Pointers(environment).data());
  posix_spawnattr_destroy(&attributes);
  return error;
}

std::vector<pid_t> Children() {
  std::ifstream file("/proc/self/task/" + std::to_string(getpid()) + "/children");
  return {std::istream_iterator<pid_t>(file), {}};
}

// Orphans that this process has adopted and that have ended.
void ReapOrphans(pid_t program) {
  for (const pid_t child : Children()) {
    if (child != program) waitpid(child, nullptr, WNOHANG);
  }
}

// Returns true if the program has ended. Stops this process while the program is stopped.
bool HasEnded(pid_t process, int* status) {
  while (waitpid(process, status, WNOHANG | WUNTRACED) == process) {
    if (!WIFSTOPPED(*status)) return true;
    kill(getpid(), SIGSTOP);
    // Continued: a shell has continued the whole group, someone else perhaps only this process.
    kill(process, SIGCONT);
  }
  return false;
}

}  // namespace

ProgramEnd RunProgram(const std::vector<std::string>& words, const std::vector<std::string>& variables,
                      const std::function<void()>& whenChildEnds, int descriptor,
                      const std::function<void()>& whenReadable) {
  const BlockedSignals signals;
  pid_t process = 0;
  if (const int error = Spawn(words, variables, signals.Former(), &process)) {
    const bool isMissing = error == ENOENT || error == ENOTDIR;
    return {words[0] + ": " + (isMissing ? "there is no such program" : std::strerror(error)),
            isMissing ? kProgramNotFound : kProgramNotExecutable};
  }
  int status = 0;
  while (!HasEnded(process, &status)) {
    const signalfd_siginfo received = signals.AwaitOr(descriptor);
    const auto signal = static_cast<int>(received.ssi_signo);
    if (signal == SIGCHLD) {
      whenChildEnds();
      ReapOrphans(process);
    } else if (signal == 0) {
      whenReadable();
    } else if (received.ssi_code != SI_KERNEL) {
      kill(process, signal);  // a terminal sends its own to the program itself
    }
  }
  if (WIFSIGNALED(status)) return {"", 0, WTERMSIG(status)};
  return {"", WEXITSTATUS(status)};
}

void EndBySignal(int signal) {
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);  // the program has left its core dump
  std::signal(signal, SIG_DFL);
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, signal);
  sigprocmask(SIG_UNBLOCK, &set, nullptr);
  raise(signal);
}

}  // namespace with_fonts
