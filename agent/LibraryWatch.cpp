#include "agent/LibraryWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <memory>

#include "platform/Clock.h"

namespace agent {

LibraryWatch::LibraryWatch(platform::RunLoop& loop, std::function<void()> changed)
    : loop_(loop), changed_(std::move(changed)), inotify_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  if (inotify_) loop_.WatchDescriptor(inotify_.Get(), [this] { OnReady(); });
}

LibraryWatch::~LibraryWatch() {
  if (inotify_) loop_.UnwatchDescriptor(inotify_.Get());
  if (timer_) loop_.RemoveTimer(timer_);
}

void LibraryWatch::Add(const std::string& folder) {
  if (!inotify_) return;
  constexpr uint32_t kEvents =
      IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_DELETE_SELF | IN_MOVED_FROM | IN_MOVED_TO | IN_MOVE_SELF | IN_ONLYDIR;
  inotify_add_watch(inotify_.Get(), folder.c_str(), kEvents);
}

void LibraryWatch::OnReady() {
  alignas(inotify_event) std::array<char, 16384> events;
  while (read(inotify_.Get(), events.data(), events.size()) > 0) {
  }
  if (timer_) loop_.RemoveTimer(timer_);
  timer_ = std::make_shared<platform::RunLoopTimer>(platform::Clock::Now() + kQuietTime, 0,
                                                    [this](platform::RunLoopTimer&) { changed_(); });
  loop_.AddTimer(timer_, platform::RunLoopMode::kCommon);
}

}  // namespace agent
