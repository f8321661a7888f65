#include "agent/library/FolderWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace agent {

namespace {

std::string LastProblem() { return std::generic_category().message(errno); }

// Applies only below a given folder; the given folder itself may be hidden.
bool IsHidden(const std::string& name) { return name.starts_with("."); }

}  // namespace

FolderWalk::FolderWalk(const Workgroups& workgroups, const std::string& excluded) {
  struct stat info;
  if (stat(excluded.c_str(), &info) == 0) IsNew(info);
  for (const Workgroup& workgroup : workgroups) {
    for (const std::string& folder : workgroup.folders) {
      if (stat(folder.c_str(), &info) != 0) {
        NoteUnreachable(AT_FDCWD, folder.c_str(), folder);
      } else if (!S_ISDIR(info.st_mode)) {
        problems_.push_back({folder, "is not a folder"});
      } else {
        Take(folder, workgroup.id, info);
      }
    }
  }
}

bool FolderWalk::IsNew(const struct stat& info) {
  return visited_.insert({static_cast<uint64_t>(info.st_dev), static_cast<uint64_t>(info.st_ino)}).second;
}

// Call right after the failure. `name` is meant from the folder.
void FolderWalk::NoteUnreachable(int folder, const char* name, const std::string& path) {
  const std::string reason = LastProblem();
  struct stat link;
  const bool dangles = fstatat(folder, name, &link, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(link.st_mode);
  problems_.push_back({path, dangles ? "the link leads nowhere: " + reason : reason});
}

void FolderWalk::Take(std::string path, uint32_t workgroupID, const struct stat& info) {
  if (!S_ISDIR(info.st_mode) && !S_ISREG(info.st_mode)) return;
  if (!IsNew(info)) return;
  if (S_ISDIR(info.st_mode)) {
    waiting_.push_back({std::move(path), workgroupID});
  } else {
    files_.push_back({std::move(path), FileIdentity::Of(info), workgroupID});
  }
}

std::string FolderWalk::Step() {
  if (next_ == names_.size()) Open();
  constexpr size_t kEntriesOfStep = 256;
  const size_t end = std::min(names_.size(), next_ + kEntriesOfStep);
  const std::string prefix = folder_.path == "/" ? folder_.path : folder_.path + "/";
  for (; next_ < end; ++next_) {
    const char* name = names_[next_].c_str();
    struct stat info;
    if (fstatat(dirfd(listing_.get()), name, &info, 0) != 0) {
      NoteUnreachable(dirfd(listing_.get()), name, prefix + name);
    } else {
      Take(prefix + name, folder_.workgroupID, info);
    }
  }
  return folder_.path;
}

void FolderWalk::Open() {
  names_.clear();
  next_ = 0;
  if (waiting_.empty()) return;
  folder_ = std::move(waiting_.front());
  waiting_.pop_front();
  listing_.reset(opendir(folder_.path.c_str()));
  if (!listing_) {
    problems_.push_back({folder_.path, LastProblem()});
    return;
  }
  while (const dirent* entry = readdir(listing_.get())) {
    if (!IsHidden(entry->d_name)) names_.emplace_back(entry->d_name);
  }
  std::sort(names_.begin(), names_.end());
}

}  // namespace agent
