#include "road/HostProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "platform/Files.h"

namespace road {

namespace fs = std::filesystem;
using platform::Descriptor;

namespace {

constexpr int kMostMilliseconds = 60000;  // a host that is silent for this long hangs

struct Pipe {
  Descriptor read, write;
};

Pipe MakePipe() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe can be made");
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

pid_t Spawn(const std::string& program, const std::vector<std::string>& arguments, const std::array<int, 3>& streams) {
  std::vector<char*> words = {const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (int stream = 0; stream < 3; ++stream) {
    posix_spawn_file_actions_adddup2(&actions, streams[static_cast<size_t>(stream)], stream);
  }
  pid_t process = -1;
  const int error = posix_spawn(&process, program.c_str(), &actions, nullptr, words.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error(program + ": " + std::strerror(error));
  return process;
}

// The process may not be our child, so waitpid cannot be used.
void AwaitEnd(pid_t process) {
  const Descriptor handle(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
  if (!handle) return;  // has ended already
  pollfd ended{handle.Get(), POLLIN, 0};
  EXPECT_EQ(poll(&ended, 1, kMostMilliseconds), 1) << "process " << process << " does not end";
}

}  // namespace

std::vector<Json> HostResult::Events() const {
  std::vector<Json> events;
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) {
    events.push_back(Json::parse(line, nullptr, false));
    EXPECT_TRUE(events.back().is_object()) << line;
  }
  return events;
}

std::string HostProcess::BuiltHost() { return APP_DIR "/host/host"; }

HostProcess::HostProcess(const std::vector<std::string>& arguments, const std::string& host, Streams streams) {
  signal(SIGPIPE, SIG_IGN);  // the end of the output shows that the host has ended
  Pipe output = MakePipe();
  if (streams != Streams::kPipes) {
    Descriptor ours(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (!ours || grantpt(ours.Get()) != 0 || unlockpt(ours.Get()) != 0)
      throw std::runtime_error("there is no terminal");
    const Descriptor its(open(ptsname(ours.Get()), O_RDWR | O_NOCTTY | O_CLOEXEC));
    const bool isWhole = streams == Streams::kTerminal;
    process_ = Spawn(host, arguments, {its.Get(), isWhole ? its.Get() : output.write.Get(), its.Get()});
    input_ = Descriptor(fcntl(ours.Get(), F_DUPFD_CLOEXEC, 0));
    (isWhole ? output_ : errors_) = std::move(ours);
    if (!isWhole) output_ = std::move(output.read);
    return;
  }
  Pipe input = MakePipe(), errors = MakePipe();
  process_ = Spawn(host, arguments, {input.read.Get(), output.write.Get(), errors.write.Get()});
  input_ = std::move(input.write);
  output_ = std::move(output.read);
  errors_ = std::move(errors.read);
}

HostProcess::~HostProcess() { Kill(); }

void HostProcess::Type(const std::string& keys) const {
  EXPECT_EQ(write(input_.Get(), keys.data(), keys.size()), static_cast<ssize_t>(keys.size())) << keys;
}

void HostProcess::AwaitOutput(const std::string& text) {
  size_t at = 0;
  while ((at = result_.output.find(text, taken_)) == std::string::npos) {
    if (ReadMore()) continue;
    ADD_FAILURE() << "no \"" << text << "\" in " << result_.output.substr(taken_);
    return;
  }
  taken_ = at + text.size();
}

std::string HostProcess::AwaitLine(const std::string& start) {
  AwaitOutput(start);
  const size_t begin = taken_;
  AwaitOutput("\n");
  return result_.output.substr(begin, taken_ - begin - 1);
}

// Reads what is available on either stream. Returns false when both have ended.
bool HostProcess::ReadMore() {
  if (!output_ && !errors_) return false;
  pollfd streams[] = {{output_.Get(), POLLIN, 0}, {errors_.Get(), POLLIN, 0}};
  if (poll(streams, 2, kMostMilliseconds) <= 0) {
    ADD_FAILURE() << "the host hangs; it has said: " << result_.errors;
    Kill();
    return false;
  }
  for (const auto& [stream, text] : {std::pair(&output_, &result_.output), std::pair(&errors_, &result_.errors)}) {
    const pollfd& polled = streams[stream == &output_ ? 0 : 1];
    if (!*stream || polled.revents == 0) continue;
    char buffer[4096];
    const ssize_t got = read(stream->Get(), buffer, sizeof buffer);
    if (got > 0) {
      text->append(buffer, static_cast<size_t>(got));
    } else {
      stream->Close();
    }
  }
  return true;
}

Json HostProcess::NextEvent() {
  size_t end = 0;
  while ((end = result_.output.find('\n', taken_)) == std::string::npos) {
    if (!ReadMore()) return nullptr;
  }
  Json event = Json::parse(result_.output.substr(taken_, end - taken_), nullptr, false);
  EXPECT_TRUE(event.is_object()) << result_.output.substr(taken_, end - taken_);
  taken_ = end + 1;
  return event;
}

Json HostProcess::NextEvent(const std::string& kind) {
  Json event = NextEvent();
  while (event.is_object() && event["event"] != kind) event = NextEvent();
  EXPECT_TRUE(event.is_object()) << "no event \"" << kind << "\"; the host has said: " << result_.errors;
  return event;
}

void HostProcess::Kill() {
  if (process_ <= 0) return;
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  process_ = -1;
}

void HostProcess::KillAt(long systemCall, const std::function<void()>& act) {
  ASSERT_EQ(ptrace(PTRACE_SEIZE, process_, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL), 0);
  ASSERT_EQ(ptrace(PTRACE_INTERRUPT, process_, nullptr, nullptr), 0);
  act();
  constexpr int kSystemCallStop = SIGTRAP | 0x80;
  for (int status = 0; waitpid(process_, &status, __WALL) == process_ && WIFSTOPPED(status);) {
    __ptrace_syscall_info info{};
    const bool isAtCall = WSTOPSIG(status) == kSystemCallStop &&
                          ptrace(PTRACE_GET_SYSCALL_INFO, process_, sizeof info, &info) > 0 &&
                          info.op == PTRACE_SYSCALL_INFO_ENTRY && info.entry.nr == static_cast<uint64_t>(systemCall);
    if (isAtCall) return Kill();
    const bool isSignal = WSTOPSIG(status) != kSystemCallStop && status >> 16 == 0;
    if (ptrace(PTRACE_SYSCALL, process_, nullptr, isSignal ? WSTOPSIG(status) : 0) != 0) break;
  }
  ADD_FAILURE() << "the host did not come to the system call";
}

HostResult HostProcess::Finish() {
  input_.Close();
  while (ReadMore()) {
  }
  int status = 0;
  if (process_ > 0 && waitpid(process_, &status, 0) == process_) {
    result_.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  process_ = -1;
  return result_;
}

HostResult RunHost(const std::vector<std::string>& arguments, const std::string& host) {
  return HostProcess(arguments, host).Finish();
}

pid_t StateFolder::AgentProcess() const {
  std::error_code error;
  for (const auto& entry : fs::directory_iterator("/proc", error)) {
    std::string commandLine;
    if (platform::ReadFile((entry.path() / "cmdline").string(), commandLine)) continue;
    const size_t end = commandLine.find('\0');
    if (end == std::string::npos || !commandLine.substr(0, end).ends_with("/Nexcore")) continue;
    if (commandLine.c_str() + end + 1 == path_) return std::stoi(entry.path().filename().string());
  }
  return 0;
}

bool StateFolder::EndAgent(int signal) const {
  const pid_t process = AgentProcess();
  if (process == 0) return false;
  kill(process, signal);
  AwaitEnd(process);
  return true;
}

void StateFolder::AwaitAgentsEnd() const {
  if (const pid_t process = AgentProcess()) AwaitEnd(process);
}

std::vector<std::string> StateFolder::Links() const {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& entry : fs::recursive_directory_iterator(path_ + "/active", error)) {
    if (entry.is_symlink()) names.push_back(entry.path().filename().string());
  }
  return names;
}

std::vector<std::string> StateFolder::NamesByFontList() const {
  std::istringstream lines(OutputOf("FONTCONFIG_FILE='" + path_ + "/fonts.conf' fc-list : postscriptname"));
  std::vector<std::string> names;
  constexpr std::string_view kBefore = ":postscriptname=";
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(kBefore)) names.push_back(line.substr(kBefore.size()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string OutputOf(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> stream(popen(command.c_str(), "r"), &pclose);
  if (!stream) throw std::runtime_error(command);
  std::string text;
  char buffer[4096];
  for (size_t got = 0; (got = fread(buffer, 1, sizeof buffer, stream.get())) > 0;) text.append(buffer, got);
  return text;
}

}  // namespace road
