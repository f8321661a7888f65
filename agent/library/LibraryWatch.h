// Reports changes in the library folders, so that they can be scanned again.
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
  // Changes often come in groups, for example when a folder is copied. The callback runs when there was none for this
  // number of seconds, but at most kLongestDelay after the first.
  static constexpr double kQuietTime = 1.0;
  static constexpr double kLongestDelay = 10.0;
  // How often the given folders are checked: a folder that is missing or on a removable drive cannot be watched.
  static constexpr double kLookInterval = 5.0;
  // How often the callback runs while the system cannot watch a folder.
  static constexpr double kUnwatchedInterval = 60.0;

  struct Events {
    std::function<void()> changed;
    std::function<void(const std::string& line)> report;  // a line for people: a folder cannot be watched
  };

  // The given folders are the ones that the user named. They are absolute and need not exist.
  LibraryWatch(platform::RunLoop& loop, const std::vector<std::string>& given, Events events);
  ~LibraryWatch();
  LibraryWatch(const LibraryWatch&) = delete;
  LibraryWatch& operator=(const LibraryWatch&) = delete;

  // Replaces the given folders. Forgets what it watches, so a scan must follow.
  void SetGiven(const std::vector<std::string>& given);
  // Call before each scan, which then adds every folder before it reads its entries.
  void BeginScan();
  // Does nothing for a watched folder. A deleted folder is removed automatically.
  void Add(const std::string& folder);
  // True if a folder of the last scan can't be watched.
  bool IsUnwatched() const { return isUnwatched_; }

 private:
  using Identity = std::pair<uint64_t, uint64_t>;  // device and inode; zeros if it is not a folder now
  static Identity IdentityOf(const std::string& folder);
  void Open();
  void Close();
  void OnReady();
  void Look();
  void NoteUnwatched(const std::string& folder, int error);

  platform::RunLoop& loop_;
  Events events_;
  std::map<std::string, Identity> given_;  // state when the last scan began
  platform::Descriptor inotify_;
  platform::RunLoopTimerRef changeTimer_;
  platform::RunLoopTimerRef lookTimer_;
  double firstChange_ = 0;
  double lastScan_ = 0;
  bool isUnwatched_ = false;  // a folder of the last scan is not watched
  bool wasReported_ = false;
};

}  // namespace agent
