// Tells when something in the library folders has changed, so that they can be scanned again.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/LocalSocket.h"
#include "platform/RunLoop.h"

namespace agent {

class LibraryWatch {
 public:
  // Changes come in swarms (a copy of a folder); the callback runs when none has come for so many seconds.
  static constexpr double kQuietTime = 1.0;

  LibraryWatch(platform::RunLoop& loop, std::function<void()> changed);
  ~LibraryWatch();
  LibraryWatch(const LibraryWatch&) = delete;
  LibraryWatch& operator=(const LibraryWatch&) = delete;

  // These folders in place of those before. Where the system allows no more watches, the rest goes unwatched.
  void Watch(const std::vector<std::string>& folders);

 private:
  void Close();
  void OnReady();
  platform::RunLoop& loop_;
  std::function<void()> changed_;
  platform::Descriptor inotify_;
  platform::RunLoopTimerRef timer_;
};

}  // namespace agent
