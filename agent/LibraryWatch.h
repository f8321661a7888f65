// Tells when something in the library folders has changed, so that they can be scanned again.
#pragma once

#include <functional>
#include <string>

#include "platform/Descriptor.h"
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

  // From here on; a folder that is watched already stays so. Where the system allows no more watches, the rest goes
  // unwatched, and a folder that is deleted drops out by itself.
  void Add(const std::string& folder);

 private:
  void OnReady();
  platform::RunLoop& loop_;
  std::function<void()> changed_;
  platform::Descriptor inotify_;
  platform::RunLoopTimerRef timer_;
};

}  // namespace agent
