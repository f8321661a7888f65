#include "platform/Process.h"

#include <dirent.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <map>
#include <mutex>

#include "platform/Descriptor.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/PropertyList.h"

extern char** environ;

namespace platform {

namespace {

std::string ApplicationsFolder() { return GetPlaces().runtime + "/applications"; }

std::string ExecutableOf(int pid) {
  char path[PATH_MAX];
  const ssize_t length = readlink(("/proc/" + std::to_string(pid) + "/exe").c_str(), path, sizeof path);
  return std::string(path, length > 0 ? static_cast<size_t>(length) : 0);
}

// Returns the start time of a process in clock ticks since the machine started; empty if there is no such process or it
// is a zombie.
std::string StartTimeOf(int pid) {
  std::string text;
  if (ReadFile("/proc/" + std::to_string(pid) + "/stat", text)) return "";
  size_t at = text.rfind(')');  // the name before it may contain blanks
  if (at == std::string::npos || at + 2 >= text.size() || text[at + 2] == 'Z' || text[at + 2] == 'X') return "";
  at += 2;
  for (int field = 3; field < 22; ++field) {
    at = text.find(' ', at);
    if (at == std::string::npos) return "";
    ++at;
  }
  return text.substr(at, text.find(' ', at) - at);
}

bool BelongsToThisUser(int pid) {
  struct stat info;
  return stat(("/proc/" + std::to_string(pid)).c_str(), &info) == 0 && info.st_uid == geteuid();
}

bool ReadEntry(const std::string& path, RunningApplication& application) {
  std::string text;
  if (ReadFile(path, text)) return false;
  const Dictionary entry(ParseXMLPropertyList(text).value);
  const int pid = static_cast<int>(entry.GetInteger("ProcessID"));
  const std::string executable = entry.GetString("Executable").Text();
  const std::string started = entry.GetString("StartTime").Text();
  if (pid <= 0 || started.empty() || StartTimeOf(pid) != started || !BelongsToThisUser(pid)) return false;
  // The system appends a word if the file was replaced, for example by an update; the program still runs.
  const std::string running = ExecutableOf(pid);
  if (running != executable && running != executable + " (deleted)") return false;
  application = {UniqueString(entry.GetString("Name").View()), entry.GetString("Identifier").Text(), executable, pid,
                 std::strtoull(started.c_str(), nullptr, 10)};
  return true;
}

struct PowerObservers {
  std::map<int, PowerObserver> byToken;
  int lastToken = 0;
};

PowerObservers& Observers() {
  static PowerObservers sObservers;
  return sObservers;
}

}  // namespace

String UniqueString(std::string_view text) {
  static std::mutex sMutex;
  // Leaked on purpose: detached threads still read it while the process ends.
  static auto& sStrings = *new std::map<std::string, String, std::less<>>;
  constexpr size_t kLongest = 64;
  const bool isASCII =
      std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (text.size() > kLongest || !isASCII) return String::FromUTF8(text);
  const std::lock_guard lock(sMutex);
  auto found = sStrings.find(text);
  if (found == sStrings.end()) found = sStrings.emplace(std::string(text), String::FromUTF8(text)).first;
  return found->second;
}

std::vector<RunningApplication> RunningApplications() {
  std::vector<RunningApplication> applications;
  const std::string folder = ApplicationsFolder();
  DIR* listing = opendir(folder.c_str());
  if (!listing) return applications;
  const std::unique_ptr<DIR, int (*)(DIR*)> owned(listing, &closedir);
  while (const dirent* item = readdir(listing)) {
    if (item->d_name[0] == '.') continue;
    const std::string path = folder + "/" + item->d_name;
    RunningApplication application;
    if (ReadEntry(path, application)) {
      applications.push_back(std::move(application));
    } else {
      unlink(path.c_str());  // left by a killed program
    }
  }
  // Sort the last started one to the end: a search for a name uses the last match.
  std::sort(applications.begin(), applications.end(), [](const auto& a, const auto& b) {
    return std::pair(a.startTime, a.processID) < std::pair(b.startTime, b.processID);
  });
  return applications;
}

class Announcement {
 public:
  explicit Announcement(std::string path) : path_(std::move(path)) {}
  ~Announcement() { unlink(path_.c_str()); }
  Announcement(const Announcement&) = delete;
  Announcement& operator=(const Announcement&) = delete;

 private:
  std::string path_;
};

std::shared_ptr<Announcement> AnnounceApplication(const std::string& name, const std::string& identifier,
                                                  std::string* error) {
  std::error_code failure;
  OpenPrivateFolder(GetPlaces().runtime, failure);
  if (!failure) failure = MakeFolder(ApplicationsFolder(), 0700);
  const int pid = getpid();
  const std::string path = ApplicationsFolder() + "/" + std::to_string(pid);
  if (!failure) {
    Dictionary entry = Dictionary::Create();
    entry.Set("Name", name);
    entry.Set("Identifier", identifier);
    entry.Set("Executable", ExecutableOf(pid));
    entry.Set("StartTime", StartTimeOf(pid));
    entry.Set("ProcessID", Number::FromInteger(pid));
    failure = ReplaceFileUnsynced(path, CreateXMLPropertyList(entry));
  }
  if (!failure) return std::make_shared<Announcement>(path);
  if (error) *error = path + ": " + DescribeError(failure);
  return nullptr;
}

bool IsExecutableFile(const std::string& path) {
  struct stat info;
  return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) && access(path.c_str(), X_OK) == 0;
}

namespace {

// Runs in the child between fork and exec: only async-signal-safe calls.
[[noreturn]] void BecomeDetached(const char* executable, char* const* arguments, int output, int report) {
  setsid();
  const pid_t grandchild = fork();
  if (grandchild != 0) _exit(grandchild < 0 ? 1 : 0);
  const int input = open("/dev/null", O_RDONLY | O_CLOEXEC);
  dup2(input, 0);
  dup2(output, 1);
  dup2(output, 2);
  execv(executable, arguments);
  const int reason = errno;
  [[maybe_unused]] const ssize_t written = write(report, &reason, sizeof reason);
  _exit(127);
}

}  // namespace

bool LaunchDetached(const std::string& executable, const std::string& argument, const std::string& outputFile,
                    std::string* error) {
  const auto fail = [&](int reason) {
    if (error) *error = executable + ": " + std::strerror(reason);
    return false;
  };
  const std::string target = outputFile.empty() ? "/dev/null" : outputFile;
  const Descriptor output(open(target.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
  if (!output) return fail(errno);
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return fail(errno);
  const Descriptor readEnd(ends[0]);
  Descriptor writeEnd(ends[1]);
  char* const arguments[] = {const_cast<char*>(executable.c_str()), const_cast<char*>(argument.c_str()), nullptr};
  // Fork twice: the program becomes a child of the system, so we need not wait for it.
  const pid_t child = fork();
  if (child < 0) return fail(errno);
  if (child == 0) BecomeDetached(executable.c_str(), arguments, output.Get(), writeEnd.Get());
  writeEnd.Close();
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  int reason = 0;
  ssize_t got = 0;  // nothing if the program runs, because exec closes the pipe
  while ((got = read(readEnd.Get(), &reason, sizeof reason)) < 0 && errno == EINTR) {
  }
  if (got == static_cast<ssize_t>(sizeof reason)) return fail(reason);
  return (WIFEXITED(status) && WEXITSTATUS(status) == 0) || fail(EAGAIN);
}

int AddPowerObserver(PowerObserver observer) {
  PowerObservers& observers = Observers();
  observers.byToken[++observers.lastToken] = std::move(observer);
  return observers.lastToken;
}

void RemovePowerObserver(int token) { Observers().byToken.erase(token); }

void PostPowerEvent(PowerEvent event) {
  const auto observers = Observers().byToken;
  for (const auto& [token, observer] : observers) {
    if (Observers().byToken.contains(token)) observer(event);  // unless an earlier observer removed it
  }
}

void NoticeSleep(double secondsAsleep) {
  constexpr double kShortest = 0.5;  // seconds
  static double sKnown = secondsAsleep;
  const bool hasSlept = secondsAsleep - sKnown >= kShortest;
  sKnown = secondsAsleep;
  if (!hasSlept) return;
  PostPowerEvent(PowerEvent::kWillSleep);
  PostPowerEvent(PowerEvent::kDidWake);
}

double SecondsAsleep() {
  const auto seconds = [](clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
  };
  return seconds(CLOCK_BOOTTIME) - seconds(CLOCK_MONOTONIC);
}

std::string CreateUUIDString() {
  std::string text;
  if (ReadFile("/proc/sys/kernel/random/uuid", text)) return "";
  std::string uuid;
  for (const char c : text) {
    if (c != '\n') uuid.push_back(c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c);
  }
  return uuid;
}

}  // namespace platform
