#include "with-fonts/FolderWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <unordered_map>

#include "platform/LastError.h"

namespace with_fonts {

namespace {

namespace fs = std::filesystem;

constexpr uint32_t kEvents =
    IN_OPEN | IN_CREATE | IN_MOVED_TO | IN_MOVED_FROM | IN_MOVE_SELF | IN_ONLYDIR | IN_DONT_FOLLOW;

}  // namespace

void FolderWatch::Complain(const std::string& line) {
  if (std::find(complaints_.begin(), complaints_.end(), line) != complaints_.end()) return;
  complaints_.push_back(line);
  complain_(line);
}

bool FolderWatch::AddOne(const std::string& folder, bool isRoot) {
  if (!notify_) notify_ = platform::Descriptor(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
  const int watch = notify_ ? inotify_add_watch(notify_.Get(), folder.c_str(), kEvents) : -1;
  if (watch >= 0) folders_[watch] = folder;
  if (watch >= 0) return true;
  if (errno == ENOSPC) {
    Complain("the system's watches are used up (fs.inotify.max_user_watches); some folders are not watched");
  } else if (errno == ENOENT || errno == ENOTDIR) {
    // One that is found below another may be gone by now.
    if (isRoot) Complain(folder + ": there is no such folder");
  } else {
    Complain(folder + ": " + platform::LastError().message() + "; it is not watched");
  }
  return false;
}

void FolderWatch::Add(const std::string& folder) {
  if (!AddOne(folder, true)) return;
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
  std::unordered_map<std::string, size_t> opened;  // with the number of the latest event
  size_t number = 0;
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
      const std::string path = folder->second + (event->len > 0 ? std::string("/") + event->name : "");
      if ((event->mask & IN_ISDIR) == 0 && (event->mask & IN_OPEN) != 0) {
        opened[path] = ++number;
      } else {
        NoticeFolder(event->wd, event->mask, path);
      }
    }
  }
  std::vector<std::string> paths;
  paths.reserve(opened.size());
  for (const auto& [path, order] : opened) paths.push_back(path);
  std::sort(paths.begin(), paths.end(), [&opened](const auto& a, const auto& b) { return opened[a] < opened[b]; });
  return paths;
}

// The event of the folder that the watch is for, or of one in it.
void FolderWatch::NoticeFolder(int watch, uint32_t events, const std::string& path) {
  if ((events & IN_IGNORED) != 0) {
    if (roots_.erase(watch) > 0) Complain(path + ": is gone, and no longer watched");
    folders_.erase(watch);
  } else if ((events & IN_MOVE_SELF) != 0) {
    // One below a root is handled by the event of its parent.
    if (!roots_.contains(watch)) return;
    ForgetBelow(path);
    Complain(path + ": was moved, and is no longer watched");
  } else if ((events & IN_ISDIR) != 0 && (events & IN_MOVED_FROM) != 0) {
    ForgetBelow(path);
  } else if ((events & IN_ISDIR) != 0 && (events & (IN_CREATE | IN_MOVED_TO)) != 0 && AddOne(path)) {
    AddBelow(path);
  }
}

// With the folder itself. Its files have other paths now.
void FolderWatch::ForgetBelow(const std::string& folder) {
  std::erase_if(folders_, [&](const auto& one) {
    if (one.second != folder && !one.second.starts_with(folder + "/")) return false;
    inotify_rm_watch(notify_.Get(), one.first);
    roots_.erase(one.first);
    return true;
  });
}

}  // namespace with_fonts
