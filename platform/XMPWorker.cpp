#include "platform/XMPWorker.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include "platform/XMPWorkerLimits.h"

extern char** environ;

namespace platform {

namespace {

// The worker is in the folder of this library.
std::string ProgramBesideLibrary() {
  Dl_info info{};
  dladdr(reinterpret_cast<const void*>(&ProgramBesideLibrary), &info);
  const std::string library = info.dli_fname ? info.dli_fname : "";
  return library.substr(0, library.rfind('/') + 1) + "xmp-worker";
}

// Owns the attributes and actions for posix_spawn.
class SpawnPlan {
 public:
  explicit SpawnPlan(int input) {
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    posix_spawnattr_init(&attributes);
    // Its own process group: Ctrl-C at the terminal is meant for the program that started it.
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

XMPWorker& XMPWorker::Shared() {
  static XMPWorker sWorker(ProgramBesideLibrary());
  return sWorker;
}

XMPWorker::~XMPWorker() { Stop(); }

bool XMPWorker::Start(std::string* problem) {
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

void XMPWorker::Stop() {
  socket_.Close();
  if (process_ != 0 && owner_ == getpid()) {
    kill(process_, SIGKILL);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
  }
  process_ = 0;
}

// Returns why there was no answer. The process is gone afterwards.
std::string XMPWorker::Explain(bool isLate, uint32_t seconds) {
  const std::string tooLong = "the XMP library took more than " + std::to_string(seconds) + " seconds";
  if (isLate) {
    Stop();
    return tooLong;
  }
  // The other side is closed: the process is ending or, if it closed it by mistake, is terminated here.
  kill(process_, SIGTERM);
  int status = 0;
  const bool isKnown = waitpid(process_, &status, 0) == process_;
  process_ = 0;
  socket_.Close();
  if (!isKnown) return "the XMP library's process ended";
  if (WIFEXITED(status) && WEXITSTATUS(status) == kWorkerOutOfMemory) {
    return "the XMP library needs more than " + std::to_string(kWorkerMemory >> 20) + " MiB of memory";
  }
  if (WIFEXITED(status)) return "the XMP library's process ended with status " + std::to_string(WEXITSTATUS(status));
  const int signal = WTERMSIG(status);
  if (signal == SIGXCPU || signal == SIGALRM) return tooLong;
  return "its metadata is nested too deep or damaged (" + std::string(strsignal(signal)) + " in the XMP library)";
}

bool XMPWorker::Ask(const XMPMessage& request, XMPMessage& answer, std::string* problem) {
  const std::lock_guard lock(mutex_);
  if (process_ != 0 && owner_ != getpid()) Stop();
  // A worker that was killed while idle must not make this request fail.
  if (process_ != 0 && waitpid(process_, nullptr, WNOHANG) != 0) process_ = 0;
  if (request.path.size() > kLargestXMPText || request.packet.size() > kLargestXMPText) {
    *problem = "its metadata is larger than " + std::to_string(kLargestXMPText >> 20) + " MiB";
    return false;
  }
  if (process_ == 0 && !Start(problem)) return false;
  // The limits of this process apply to its work there, too.
  rlimit fileSize{};
  getrlimit(RLIMIT_FSIZE, &fileSize);
  prlimit(process_, RLIMIT_FSIZE, &fileSize, nullptr);
  const std::chrono::seconds patience(uint64_t{kPatienceFactor} * request.number);
  const auto deadline = std::chrono::steady_clock::now() + patience;
  const timeval sending{patience.count(), 0};
  setsockopt(socket_.Get(), SOL_SOCKET, SO_SNDTIMEO, &sending, sizeof sending);
  if (SendXMPMessage(socket_.Get(), request) && ReceiveXMPMessage(socket_.Get(), answer, deadline)) return true;
  *problem = Explain(std::chrono::steady_clock::now() >= deadline, request.number);
  return false;
}

}  // namespace platform
