#include "agent/library/LibraryWatch.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <system_error>

#include "platform/Clock.h"

namespace agent {

LibraryWatch::LibraryWatch(platform::RunLoop& loop, const std::vector<std::string>& given, Events events)
    : loop_(loop), events_(std::move(events)) {
  SetGiven(given);
  lookTimer_ = platform::RunLoopTimer::After(kLookInterval, kLookInterval, [this](platform::RunLoopTimer&) { Look(); });
  loop_.AddTimer(lookTimer_, platform::RunLoopMode::kCommon);
}

LibraryWatch::~LibraryWatch() {
  Close();
  if (changeTimer_) loop_.RemoveTimer(changeTimer_);
  loop_.RemoveTimer(lookTimer_);
}

void LibraryWatch::SetGiven(const std::vector<std::string>& given) {
  Close();
  given_.clear();
  for (const std::string& folder : given) given_[folder] = IdentityOf(folder);
}

LibraryWatch::Identity LibraryWatch::IdentityOf(const std::string& folder) {
  struct stat info;
  if (stat(folder.c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) return {};
  return {info.st_dev, info.st_ino};
}

void LibraryWatch::Open() {
  inotify_ = platform::Descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  if (inotify_) loop_.WatchDescriptor(inotify_.Get(), [this] { OnReady(); });
}

void LibraryWatch::Close() {
  if (inotify_) loop_.UnwatchDescriptor(inotify_.Get());
  inotify_.Close();
}

void LibraryWatch::BeginScan() {
  for (auto& [folder, identity] : given_) identity = IdentityOf(folder);
  lastScan_ = platform::Clock::Steady();
  wasReported_ = wasReported_ && isUnwatched_;
  isUnwatched_ = false;
}

void LibraryWatch::Add(const std::string& folder) {
  constexpr uint32_t kEvents =
      IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_DELETE_SELF | IN_MOVED_FROM | IN_MOVED_TO | IN_MOVE_SELF | IN_ONLYDIR;
  if (!inotify_) Open();
  if (inotify_ && inotify_add_watch(inotify_.Get(), folder.c_str(), kEvents) >= 0) return;
  if (errno == ENOENT || errno == ENOTDIR) {
    // It has just vanished. When a given folder with this name comes back, it is a new one.
    if (const auto given = given_.find(folder); given != given_.end()) given->second = {};
    return;
  }
  NoteUnwatched(folder, errno);
}

void LibraryWatch::NoteUnwatched(const std::string& folder, int error) {
  isUnwatched_ = true;
  if (wasReported_) return;
  wasReported_ = true;
  events_.report(folder + ": can't be watched for changes: " + std::generic_category().message(error) +
                 "; the library is scanned every " + std::to_string(static_cast<int>(kUnwatchedInterval)) + " s");
}

void LibraryWatch::OnReady() {
  alignas(inotify_event) std::array<char, 16384> events;
  while (read(inotify_.Get(), events.data(), events.size()) > 0) {
  }
  const double now = platform::Clock::Steady();
  if (!changeTimer_) firstChange_ = now;
  if (changeTimer_) loop_.RemoveTimer(changeTimer_);
  const double delay = std::min(kQuietTime, firstChange_ + kLongestDelay - now);
  changeTimer_ = platform::RunLoopTimer::After(delay, 0, [this](platform::RunLoopTimer&) {
    changeTimer_ = nullptr;
    events_.changed();
  });
  loop_.AddTimer(changeTimer_, platform::RunLoopMode::kCommon);
}

void LibraryWatch::Look() {
  const bool isOther = std::any_of(given_.begin(), given_.end(),
                                   [](const auto& entry) { return IdentityOf(entry.first) != entry.second; });
  const bool isDue = isUnwatched_ && platform::Clock::Steady() - lastScan_ >= kUnwatchedInterval;
  if (isOther || isDue) events_.changed();
}

}  // namespace agent
