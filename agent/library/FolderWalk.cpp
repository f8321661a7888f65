#include "agent/library/FolderWalk.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <system_error>

namespace agent {

namespace {

std::string LastProblem() { return std::generic_category().message(errno); }

// Applies only below a given folder; the given folder itself may be hidden.
bool IsHidden(const std::string& name) { return name.starts_with("."); }

}  // namespace

FolderWalk::FolderWalk(const Workgroups& workgroups, const std::string& excluded) {
  struct stat info;
  if (stat(excluded.c_str(), &info) == 0) visited_.emplace(info.st_dev, info.st_ino);
  for (const Workgroup& workgroup : workgroups) {
    for (const std::string& folder : workgroup.folders) Take(folder, workgroup.id, true);
  }
}

void FolderWalk::Take(const std::string& path, uint32_t workgroupID, bool isGiven) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0) {
    const std::string reason = LastProblem();
    struct stat link;
    const bool dangles = lstat(path.c_str(), &link) == 0 && S_ISLNK(link.st_mode);
    problems_.push_back({path, dangles ? "the link leads nowhere: " + reason : reason});
    return;
  }
  if (isGiven && !S_ISDIR(info.st_mode)) {
    problems_.push_back({path, "is not a folder"});
    return;
  }
  if (!S_ISDIR(info.st_mode) && !S_ISREG(info.st_mode)) return;
  if (!visited_.emplace(info.st_dev, info.st_ino).second) return;
  if (S_ISDIR(info.st_mode)) {
    waiting_.push_back({path, workgroupID});
    return;
  }
  FoundFile file;
  file.path = path;
  file.workgroupID = workgroupID;
  std::string problem;
  if (FileIdentity::Of(path, file.identity, problem)) files_.push_back(std::move(file));
}

std::string FolderWalk::Step() {
  if (waiting_.empty()) return "";
  const auto [folder, workgroupID] = waiting_.front();
  waiting_.pop_front();
  const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(folder.c_str()), &closedir);
  if (!listing) {
    problems_.push_back({folder, LastProblem()});
    return folder;
  }
  std::vector<std::string> names;
  while (const dirent* entry = readdir(listing.get())) {
    if (!IsHidden(entry->d_name)) names.emplace_back(entry->d_name);
  }
  std::sort(names.begin(), names.end());
  const std::string prefix = folder == "/" ? folder : folder + "/";
  for (const std::string& name : names) Take(prefix + name, workgroupID, false);
  return folder;
}

}  // namespace agent
