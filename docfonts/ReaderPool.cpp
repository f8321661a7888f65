#include "docfonts/ReaderPool.h"

#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <map>
#include <new>
#include <nlohmann/json.hpp>

#include "platform/ChildLimits.h"
#include "platform/LocalSocket.h"

namespace docfonts {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kOutOfMemory = 3;  // exit status of a reader process

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
  ChildProcess process;
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

ReaderPool::~ReaderPool() = default;

bool ReaderPool::Start(Reader& reader, std::string& problem) {
  const std::error_code error = reader.process.Start([this](int socket) {
    for (const auto& sibling : readers_) sibling->process.CloseSocket();
    Serve(socket);
  });
  if (error) problem = "no process can be started to read it: " + error.message();
  return !error;
}

// Runs in the reader process, which ends if the next document needs more.
void ReaderPool::LimitNext(const std::string& path) const {
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  const auto soFar = static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec);
  const rlimit time{soFar + ProcessorSecondsFor(path, limits_.seconds), RLIM_INFINITY};
  setrlimit(RLIMIT_CPU, &time);
}

void ReaderPool::Serve(int socket) {
  const rlimit none{0, 0}, memory{limits_.memory, limits_.memory};
  setrlimit(RLIMIT_CORE, &none);
  // Sanitizers reserve more than that.
  if (!platform::kIsSanitized) setrlimit(RLIMIT_AS, &memory);
  std::set_new_handler([] { _exit(kOutOfMemory); });
  // Nothing that is read here is a local time, but for each entry of an archive the C library would look whether the
  // file of the time zone has changed.
  setenv("TZ", "UTC0", 1);
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
  reader.seconds = ProcessorSecondsFor(reader.path, limits_.seconds);
  reader.deadline = Clock::now() + PatienceFor(reader.seconds, limits_.patience);
  reader.isBusy = true;
  reader.problem.clear();
  // A process that ended while idle must not make this document fail.
  for (int attempt = 0; attempt < 2; ++attempt) {
    if (!reader.process.IsStarted() && !Start(reader, reader.problem)) return false;
    if (!platform::SendMessage(reader.process.Socket(), reader.path)) return true;
    reader.process.Kill();
  }
  reader.problem = "the process that reads it does not run";
  return false;
}

void ReaderPool::Fail(Reader& reader, Report& report, bool isLate) {
  if (isLate) {
    reader.process.Kill();
    report.problems.push_back("reading it takes too long");
    return;
  }
  // The other side is closed: the process is ending.
  report.problems.push_back(DescribeEnd(reader.process.Await(), limits_, reader.seconds));
}

Report ReaderPool::Receive(Reader& reader) {
  Report report;
  std::string text;
  if (platform::ReceiveMessage(reader.process.Socket(), text)) {
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
    waiting.push_back({reader->process.Socket(), POLLIN, 0});
    busy.push_back(reader.get());
    deadline = std::min(deadline, reader->deadline);
  }
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
  poll(waiting.data(), waiting.size(), static_cast<int>(std::clamp<int64_t>(left, 0, int64_t{24} * 3600 * 1000)));
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
