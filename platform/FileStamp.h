// Identifies one state of a file, to notice that it was changed or replaced. Take it before reading the file: a change
// in between then shows the next time.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <string>

namespace platform {

struct FileStamp {
  uint64_t device = 0, inode = 0, size = 0;
  int64_t seconds = 0, nanoseconds = 0;  // last modification
  bool operator==(const FileStamp&) const = default;

  // The default of all members for a file that can't be asked.
  static FileStamp Of(const std::string& path) {
    struct stat info;
    if (stat(path.c_str(), &info) != 0) return {};
    return {info.st_dev, info.st_ino, static_cast<uint64_t>(info.st_size), info.st_mtim.tv_sec, info.st_mtim.tv_nsec};
  }
};

}  // namespace platform
