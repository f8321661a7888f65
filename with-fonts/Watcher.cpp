#include "with-fonts/Watcher.h"

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "platform/FileStamp.h"
#include "with-fonts/Documents.h"
#include "with-fonts/OpenFiles.h"

namespace with_fonts {

namespace {

constexpr size_t kMostKnown = 1000;
constexpr int kBetweenLooks = 1000, kBetweenTurns = 300;  // milliseconds
// For files that nobody has open any more: the time to serve them in each turn, and how long they wait for it.
constexpr std::chrono::milliseconds kTurn(100), kLongestWait(1000);

}  // namespace

struct Watcher::Known {
  platform::FileStamp stamp;
  docfonts::Report report;
};

struct Watcher::Use {
  std::map<pid_t, platform::Descriptor> programs;  // descriptors that tell their end
  Clock::time_point end;                           // of the use by unknown programs
};

Watcher::Watcher(FontKeeper& keeper, std::function<void(const DocumentFonts&)> write, FolderWatch::Complaint complain)
    : keeper_(keeper), write_(std::move(write)), folders_(std::move(complain)), pool_(1, ReadKnown) {}

Watcher::~Watcher() = default;

const docfonts::Report& Watcher::ReportOf(const std::string& path) {
  // Taken before reading: a change in between is seen at the next opening.
  const platform::FileStamp stamp = platform::FileStamp::Of(path);
  const auto found = known_.find(path);
  if (found != known_.end() && found->second.stamp == stamp) return found->second.report;
  if (known_.size() >= kMostKnown) known_.clear();
  Known& known = known_[path] = {stamp, {}};
  bool isGiven = false;
  pool_.Run([&]() { return std::exchange(isGiven, true) ? std::nullopt : std::optional(path); },
            [&](docfonts::Report report) {
              known.report = std::move(report);
              return true;
            });
  Collect(path);
  return known.report;
}

// `own` is a document that this program has opened itself. That is no use of it.
void Watcher::Collect(const std::string& own) {
  for (const std::string& path : folders_.ReadOpened()) {
    if (path != own) opened_[path] = Clock::now();
  }
}

void Watcher::ServeOpened() {
  if (opened_.empty()) return;
  std::set<std::string> paths;
  for (const auto& [path, when] : opened_) paths.insert(path);
  for (const auto& [path, user] : UsersOf(paths)) {
    opened_.erase(path);
    Notice(path, user);
  }
  const Clock::time_point end = Clock::now() + kTurn;
  while (!opened_.empty() && Clock::now() < end) {
    const auto latest = std::max_element(opened_.begin(), opened_.end(),
                                         [](const auto& a, const auto& b) { return a.second < b.second; });
    const std::string path = latest->first;
    opened_.erase(latest);
    Notice(path, 0);
  }
  std::erase_if(opened_, [end](const auto& one) { return one.second + kLongestWait < end; });
}

// `user` is 0 if no program was seen that has the document open.
void Watcher::Notice(const std::string& path, pid_t user) {
  const auto old = used_.find(path);
  const bool isKnown = known_.contains(path) && known_[path].stamp == platform::FileStamp::Of(path);
  const docfonts::Report& report = ReportOf(path);
  if (report.kind.empty() || report.fonts.empty()) return;
  // It may have been opened since. Look before the fonts are there: a program may need nothing else.
  if (user == 0) user = UserOf(path);
  // A document that was changed since may need other fonts.
  if (old != used_.end() && !isKnown) isKeeperThere_ = keeper_.Close(path) && isKeeperThere_;
  if (old == used_.end() || !isKnown) {
    const DocumentFonts fonts = keeper_.Open(path, report);
    isKeeperThere_ = keeper_.IsThere();
    Collect(path);
    write_(fonts);
  }
  Use& use = used_[path];
  if (user == 0) {
    use.end = Clock::now() + kUnknownUse;
  } else if (!use.programs.contains(user)) {
    use.programs[user] = platform::Descriptor(static_cast<int>(syscall(SYS_pidfd_open, user, 0)));
  }
}

void Watcher::CloseUnused() {
  for (auto document = used_.begin(); document != used_.end();) {
    Use& use = document->second;
    std::erase_if(use.programs, [](const auto& program) {
      pollfd end{program.second.Get(), POLLIN, 0};
      return !program.second || poll(&end, 1, 0) > 0;
    });
    if (!use.programs.empty() || use.end > Clock::now()) {
      ++document;
      continue;
    }
    isKeeperThere_ = keeper_.Close(document->first) && isKeeperThere_;
    document = used_.erase(document);
  }
}

void Watcher::Await(int stop) {
  std::vector<pollfd> events = {{stop, POLLIN, 0}};
  if (!opened_.empty()) {
    poll(events.data(), events.size(), kBetweenTurns);
    return;
  }
  events.push_back({folders_.Descriptor(), POLLIN, 0});
  for (const auto& [path, use] : used_) {
    for (const auto& [process, end] : use.programs) events.push_back({end.Get(), POLLIN, 0});
  }
  poll(events.data(), events.size(), kBetweenLooks);
}

bool Watcher::Run(int stop) {
  while (folders_.IsWatching() && isKeeperThere_) {
    pollfd end{stop, POLLIN, 0};
    if (poll(&end, 1, 0) > 0) return true;
    Collect("");
    ServeOpened();
    CloseUnused();
    Await(stop);
  }
  return false;
}

}  // namespace with_fonts
