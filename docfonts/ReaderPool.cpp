#include "docfonts/ReaderPool.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <map>
#include <new>
#include <nlohmann/json.hpp>

#include "platform/LocalSocket.h"
#include "platform/XMPWorkerLimits.h"

namespace docfonts {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kOutOfMemory = 3;  // exit status of a reader process
// Real time as a multiple of the allowed processor time: the machine may be busy, the metadata has a process of its
// own, and the file may be on a slow disk.
constexpr uint32_t kPatienceFactor = 10;
constexpr uint64_t kBytesPerSecond = uint64_t{32} << 20;

std::string Dump(const Report& report) { return ToJson(report).dump(-1, ' ', false, Json::error_handler_t::replace); }

std::string DescribeEnd(int status, const ReaderLimits& limits, uint32_t seconds) {
  if (WIFEXITED(status) && WEXITSTATUS(status) == kOutOfMemory) {
    return "reading it needs more than " + std::to_string(limits.memory >> 20) + " MiB of memory";
  }
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU) {
    return "reading it takes more than " + std::to_string(seconds) + " s of processor time";
  }
  if (WIFSIGNALED(status)) return std::string("its reader crashed: ") + strsignal(WTERMSIG(status));
  return "its reader ended with status " + std::to_string(WEXITSTATUS(status));
}

}  // namespace

struct ReaderPool::Reader {
  pid_t process = 0;  // 0 before the start
  platform::Descriptor socket;
  bool isBusy = false;
  std::string path;
  size_t number = 0;
  uint32_t seconds = 0;
  Clock::time_point deadline;
  std::string problem;  // why the document could not be passed to it
};

ReaderPool::ReaderPool(size_t processes, ReadDocument read, ReaderLimits limits)
    : read_(std::move(read)), limits_(limits) {
  for (size_t i = 0; i < std::max<size_t>(processes, 1); ++i) readers_.push_back(std::make_unique<Reader>());
}

ReaderPool::~ReaderPool() {
  for (const auto& reader : readers_) End(*reader);
}

void ReaderPool::End(Reader& reader) {
  reader.socket.Close();
  if (reader.process == 0) return;
  kill(reader.process, SIGKILL);
  while (waitpid(reader.process, nullptr, 0) < 0 && errno == EINTR) {
  }
  reader.process = 0;
}

bool ReaderPool::Start(Reader& reader, std::string& problem) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
    problem = std::string("no process can be started to read it: ") + std::strerror(errno);
    return false;
  }
  reader.socket = platform::Descriptor(ends[0]);
  platform::Descriptor other(ends[1]);
  const pid_t parent = getpid();
  reader.process = fork();
  if (reader.process < 0) {
    reader.process = 0;
    problem = std::string("no process can be started to read it: ") + std::strerror(errno);
    return false;
  }
  if (reader.process > 0) return true;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() == parent) {
    for (const auto& sibling : readers_) sibling->socket.Close();
    Serve(other.Get());
  }
  // _exit, because this process must not write the parent's buffered output.
  _exit(0);
}

uint32_t ReaderPool::SecondsFor(const std::string& path) const {
  struct stat info {};
  const bool isKnown = stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
  const uint64_t more = isKnown ? static_cast<uint64_t>(info.st_size) / kBytesPerSecond : 0;
  return static_cast<uint32_t>(std::min<uint64_t>(limits_.seconds + 1 + more, 24 * 3600));
}

// Runs in the reader process, which ends if the next document needs more.
void ReaderPool::LimitNext(const std::string& path) const {
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  const auto soFar = static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec);
  const rlimit time{soFar + SecondsFor(path), RLIM_INFINITY};
  setrlimit(RLIMIT_CPU, &time);
}

void ReaderPool::Serve(int socket) {
  const rlimit none{0, 0}, memory{limits_.memory, limits_.memory};
  setrlimit(RLIMIT_CORE, &none);
  // Sanitizers reserve more than that.
  if (!platform::kIsSanitized) setrlimit(RLIMIT_AS, &memory);
  std::set_new_handler([] { _exit(kOutOfMemory); });
  for (std::string path; !platform::ReceiveMessage(socket, path);) {
    LimitNext(path);
    std::string answer = Dump(read_(path));
    if (answer.size() > platform::kLongestMessage) {
      answer = Dump({.file = path, .problems = {"it names more fonts than can be listed"}});
    }
    if (platform::SendMessage(socket, answer)) break;
  }
}

// Returns false if no process can be started; `reader` contains the problem.
bool ReaderPool::Give(Reader& reader, std::string path, size_t number) {
  reader.path = std::move(path);
  reader.number = number;
  reader.seconds = SecondsFor(reader.path);
  reader.deadline = Clock::now() + std::chrono::seconds(uint64_t{kPatienceFactor} * reader.seconds);
  reader.isBusy = true;
  reader.problem.clear();
  // A process that ended while idle must not make this document fail.
  for (int attempt = 0; attempt < 2; ++attempt) {
    if (reader.process == 0 && !Start(reader, reader.problem)) return false;
    if (!platform::SendMessage(reader.socket.Get(), reader.path)) return true;
    End(reader);
  }
  reader.problem = "the process that reads it does not run";
  return false;
}

void ReaderPool::Fail(Reader& reader, Report& report, bool isLate) {
  if (isLate || reader.process == 0) {
    End(reader);
    report.problems.push_back("reading it takes too long");
    return;
  }
  // The other side is closed: the process is ending.
  reader.socket.Close();
  int status = 0;
  while (waitpid(reader.process, &status, 0) < 0 && errno == EINTR) {
  }
  reader.process = 0;
  report.problems.push_back(DescribeEnd(status, limits_, reader.seconds));
}

Report ReaderPool::Receive(Reader& reader) {
  Report report;
  std::string text;
  if (platform::ReceiveMessage(reader.socket.Get(), text)) {
    Fail(reader, report, false);
  } else {
    report = FromJson(Json::parse(text));
  }
  report.file = reader.path;
  reader.isBusy = false;
  return report;
}

void ReaderPool::AwaitReports(const std::function<void(size_t number, Report)>& done) {
  std::vector<pollfd> waiting;
  std::vector<Reader*> busy;
  auto deadline = Clock::time_point::max();
  for (const auto& reader : readers_) {
    if (!reader->isBusy) continue;
    if (!reader->problem.empty()) {
      reader->isBusy = false;
      done(reader->number, {.file = reader->path, .problems = {reader->problem}});
      return;
    }
    waiting.push_back({reader->socket.Get(), POLLIN, 0});
    busy.push_back(reader.get());
    deadline = std::min(deadline, reader->deadline);
  }
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
  poll(waiting.data(), waiting.size(), static_cast<int>(std::clamp<int64_t>(left, 0, 24 * 3600 * 1000)));
  for (size_t i = 0; i < busy.size(); ++i) {
    Reader& reader = *busy[i];
    if (waiting[i].revents != 0) {
      done(reader.number, Receive(reader));
    } else if (Clock::now() >= reader.deadline) {
      Report report{.file = reader.path};
      Fail(reader, report, true);
      reader.isBusy = false;
      done(reader.number, std::move(report));
    }
  }
}

void ReaderPool::Run(const std::function<std::optional<std::string>()>& next, const std::function<bool(Report)>& take) {
  std::map<size_t, Report> finished;  // reports that wait for earlier ones
  size_t given = 0, taken = 0;
  bool isOver = false;
  while (true) {
    for (const auto& reader : readers_) {
      if (reader->isBusy || isOver) continue;
      std::optional<std::string> path = next();
      isOver = !path;
      if (path) Give(*reader, std::move(*path), given++);
    }
    if (taken == given) return;
    AwaitReports([&](size_t number, Report report) { finished.emplace(number, std::move(report)); });
    for (auto first = finished.begin(); first != finished.end() && first->first == taken; first = finished.begin()) {
      if (!take(std::move(first->second))) return;
      finished.erase(first);
      ++taken;
    }
  }
}

}  // namespace docfonts
