// Tells when something in the library folders has changed, so that they can be scanned again.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/Descriptor.h"
#include "platform/RunLoop.h"

namespace agent {

class LibraryWatch {
 public:
  // Changes come in swarms (a copy of a folder); the callback runs when none has come for so many seconds, but at most
  // kLongestDelay after the first.
  static constexpr double kQuietTime = 1.0;
  static constexpr double kLongestDelay = 10.0;
  // How often the given folders are looked for: one that is missing, or on a drive that goes and comes, can't be watched.
  static constexpr double kLookInterval = 5.0;
  // How often the callback runs while the system refuses to watch a folder.
  static constexpr double kUnwatchedInterval = 60.0;

  struct Events {
    std::function<void()> changed;
    std::function<void(const std::string& line)> report;  // for a person: a folder can't be watched
  };

  // The given folders are those that the user named, absolute; they need not exist.
  LibraryWatch(platform::RunLoop& loop, const std::vector<std::string>& given, Events events);
  ~LibraryWatch();
  LibraryWatch(const LibraryWatch&) = delete;
  LibraryWatch& operator=(const LibraryWatch&) = delete;

  // To be called before each scan, which then adds every folder before it reads its entries.
  void BeginScan();
  // A folder that is watched already stays so; one that is deleted drops out by itself.
  void Add(const std::string& folder);

 private:
  using Identity = std::pair<uint64_t, uint64_t>;  // device and inode; zeros if it is no folder now
  static Identity IdentityOf(const std::string& folder);
  void Open();
  void OnReady();
  void Look();
  void NoteUnwatched(const std::string& folder, int error);

  platform::RunLoop& loop_;
  Events events_;
  std::map<std::string, Identity> given_;  // as they were when the last scan began
  platform::Descriptor inotify_;
  platform::RunLoopTimerRef changeTimer_;
  platform::RunLoopTimerRef lookTimer_;
  double firstChange_ = 0;
  double lastScan_ = 0;
  bool isUnwatched_ = false;  // a folder of the last scan
  bool wasReported_ = false;
};

}  // namespace agent
