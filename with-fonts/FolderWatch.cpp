#include "with-fonts/FolderWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>

#include "platform/LastError.h"

namespace with_fonts {

namespace {

namespace fs = std::filesystem;

constexpr uint32_t kEvents = IN_OPEN | IN_CREATE | IN_MOVED_TO | IN_ONLYDIR | IN_DONT_FOLLOW;

}  // namespace

void FolderWatch::Complain(const std::string& line) {
  if (std::find(complaints_.begin(), complaints_.end(), line) != complaints_.end()) return;
  complaints_.push_back(line);
  complain_(line);
}

bool FolderWatch::AddOne(const std::string& folder) {
  if (!notify_) notify_ = platform::Descriptor(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
  const int watch = notify_ ? inotify_add_watch(notify_.Get(), folder.c_str(), kEvents) : -1;
  if (watch >= 0) folders_[watch] = folder;
  if (watch >= 0) return true;
  if (errno == ENOSPC) {
    Complain("the system's watches are used up (fs.inotify.max_user_watches); some folders are not watched");
  } else if (errno != ENOENT && errno != ENOTDIR) {
    Complain(folder + ": " + platform::LastError().message() + "; it is not watched");
  }
  return false;
}

void FolderWatch::Add(const std::string& folder) {
  if (!AddOne(folder)) return Complain(folder + ": there is no such folder");
  for (const auto& [watch, path] : folders_) {
    if (path == folder) roots_[watch] = path;
  }
  AddBelow(folder);
}

void FolderWatch::AddBelow(const std::string& folder) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code unknown;
    if (!entry->is_directory(unknown) || entry->is_symlink(unknown)) continue;
    if (AddOne(entry->path().string())) AddBelow(entry->path().string());
  }
}

std::vector<std::string> FolderWatch::ReadOpened() {
  std::vector<std::string> opened;
  alignas(inotify_event) std::array<char, size_t{64} << 10> buffer;
  ssize_t size = 0;
  while ((size = read(notify_.Get(), buffer.data(), buffer.size())) > 0) {
    for (ssize_t at = 0; at < size;) {
      const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
      at += static_cast<ssize_t>(sizeof *event + event->len);
      if ((event->mask & IN_Q_OVERFLOW) != 0) {
        Complain("more files were opened at once than can be noticed; some documents may be without their fonts");
        continue;
      }
      const auto folder = folders_.find(event->wd);
      if (folder == folders_.end()) continue;
      const std::string path = folder->second + "/" + (event->len > 0 ? event->name : "");
      if ((event->mask & IN_IGNORED) != 0) {
        if (roots_.erase(event->wd) > 0) Complain(folder->second + ": is gone, and no longer watched");
        folders_.erase(folder);
      } else if ((event->mask & IN_ISDIR) == 0 && (event->mask & IN_OPEN) != 0) {
        if (std::find(opened.begin(), opened.end(), path) == opened.end()) opened.push_back(path);
      } else if ((event->mask & IN_ISDIR) != 0 && (event->mask & (IN_CREATE | IN_MOVED_TO)) != 0 && AddOne(path)) {
        AddBelow(path);
      }
    }
  }
  return opened;
}

}  // namespace with_fonts
