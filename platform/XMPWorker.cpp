#include "platform/XMPWorker.h"

#include <dlfcn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include "platform/ChildLimits.h"

namespace platform {

namespace {

// The worker is in the folder of this library.
std::string ProgramBesideLibrary() {
  Dl_info info{};
  dladdr(reinterpret_cast<const void*>(&ProgramBesideLibrary), &info);
  const std::string library = info.dli_fname ? info.dli_fname : "";
  return library.substr(0, library.rfind('/') + 1) + "xmp-worker";
}

}  // namespace

XMPWorker& XMPWorker::Shared() {
  static XMPWorker sWorker(ProgramBesideLibrary());
  return sWorker;
}

// Returns why there was no answer. The process is gone afterwards.
std::string XMPWorker::Explain(bool isLate, uint32_t seconds) {
  std::string tooLong = "the XMP library took more than " + std::to_string(seconds) + " seconds";
  if (isLate) {
    child_.Kill();
    return tooLong;
  }
  int status = 0;
  if (!child_.Reap(status)) return "the XMP library's process ended";
  if (WIFEXITED(status) && WEXITSTATUS(status) == kChildOutOfMemory) {
    return "the XMP library needs more than " + std::to_string(kXMPWorkerMemory >> 20) + " MiB of memory";
  }
  if (WIFEXITED(status)) return "the XMP library's process ended with status " + std::to_string(WEXITSTATUS(status));
  const int signal = WTERMSIG(status);
  if (signal == SIGXCPU || signal == SIGALRM) return tooLong;
  return "its metadata is nested too deep or damaged (" + std::string(strsignal(signal)) + " in the XMP library)";
}

bool XMPWorker::Ask(const XMPMessage& request, XMPMessage& answer, std::string* problem) {
  const std::lock_guard lock(mutex_);
  if (request.path.size() > kLargestXMPText || request.packet.size() > kLargestXMPText) {
    *problem = "its metadata is larger than " + std::to_string(kLargestXMPText >> 20) + " MiB";
    return false;
  }
  // A worker that was killed while idle must not make this request fail.
  if (!child_.IsRunning() && !child_.Start(problem)) return false;
  // The limits of this process apply to its work there, too.
  rlimit fileSize{};
  getrlimit(RLIMIT_FSIZE, &fileSize);
  prlimit(child_.Process(), RLIMIT_FSIZE, &fileSize, nullptr);
  const std::chrono::seconds patience(uint64_t{kChildPatience} * request.number);
  const auto deadline = std::chrono::steady_clock::now() + patience;
  const timeval sending{patience.count(), 0};
  setsockopt(child_.Socket(), SOL_SOCKET, SO_SNDTIMEO, &sending, sizeof sending);
  if (SendXMPMessage(child_.Socket(), request) && ReceiveXMPMessage(child_.Socket(), answer, deadline)) return true;
  *problem = Explain(std::chrono::steady_clock::now() >= deadline, request.number);
  return false;
}

}  // namespace platform
