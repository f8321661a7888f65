#include "docfonts/FileWalk.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>

#include "platform/Files.h"

namespace docfonts {

namespace {

enum class EEntry { kFile, kFolder, kOther };

EEntry LookAt(const std::string& path) {
  struct stat own {
  }, behind{};
  if (lstat(path.c_str(), &own) != 0) return EEntry::kOther;
  if (S_ISDIR(own.st_mode)) return EEntry::kFolder;
  if (stat(path.c_str(), &behind) != 0) return EEntry::kOther;
  return S_ISREG(behind.st_mode) ? EEntry::kFile : EEntry::kOther;
}

}  // namespace

FileWalk::FileWalk(const std::vector<std::string>& arguments, bool recursive) : recursive_(recursive) {
  for (auto path = arguments.rbegin(); path != arguments.rend(); ++path) waiting_.push_back({*path, true});
}

bool FileWalk::Enter(const std::string& folder) {
  const std::unique_ptr<DIR, int (*)(DIR*)> open(opendir(folder.c_str()), closedir);
  if (!open) return false;
  std::vector<std::string> files, folders;
  while (const dirent* entry = readdir(open.get())) {
    if (entry->d_name[0] == '.') continue;
    std::string path = folder + (folder.ends_with('/') ? "" : "/") + entry->d_name;
    const EEntry kind = LookAt(path);
    if (kind == EEntry::kFile) files.push_back(std::move(path));
    if (kind == EEntry::kFolder) folders.push_back(std::move(path));
  }
  std::sort(files.begin(), files.end(), std::greater<>());
  std::sort(folders.begin(), folders.end(), std::greater<>());
  for (std::string& path : folders) waiting_.push_back({std::move(path), false});
  for (std::string& path : files) waiting_.push_back({std::move(path), false});
  return true;
}

std::optional<FileWalk::File> FileWalk::Next() {
  while (!waiting_.empty()) {
    const File next = std::move(waiting_.back());
    waiting_.pop_back();
    const bool isFolder = recursive_ && platform::FolderExists(next.path);
    // A folder that disappears during the walk is reported like a missing file.
    if (!isFolder || !Enter(next.path)) return next;
  }
  return std::nullopt;
}

}  // namespace docfonts
