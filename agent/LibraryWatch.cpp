#include "agent/LibraryWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <memory>

#include "platform/Clock.h"

namespace agent {

LibraryWatch::LibraryWatch(platform::RunLoop& loop, std::function<void()> changed)
    : loop_(loop), changed_(std::move(changed)) {}

LibraryWatch::~LibraryWatch() {
  Close();
  if (timer_) loop_.RemoveTimer(timer_);
}

void LibraryWatch::Close() {
  if (!inotify_) return;
  loop_.UnwatchDescriptor(inotify_.Get());
  inotify_.Close();
}

void LibraryWatch::Watch(const std::vector<std::string>& folders) {
  Close();
  inotify_ = platform::Descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  if (!inotify_) return;
  constexpr uint32_t kEvents = IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_DELETE_SELF | IN_MOVED_FROM | IN_MOVED_TO |
                               IN_MOVE_SELF | IN_ONLYDIR;
  for (const std::string& folder : folders) inotify_add_watch(inotify_.Get(), folder.c_str(), kEvents);
  loop_.WatchDescriptor(inotify_.Get(), [this] { OnReady(); });
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
