// Bytes into and out of open files, for the sources that implement platform/Files.h.
#pragma once

#include <sys/stat.h>

#include <csignal>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/Descriptor.h"

namespace platform {

std::error_code LastError();  // of errno

// A regular file; anything else gives the errors of ReadFile, without waiting for it.
Descriptor OpenRegularFile(const std::string& path, struct stat& info, std::error_code& error);

std::error_code WriteAll(int fd, std::string_view bytes);
// Copies from one open file to another, to where that stands: all from where the first stands up to its end, or the range
// [begin, end) of it. The file system shares or copies the bytes by itself where it can.
std::error_code CopyAll(int from, int to);
std::error_code CopyRange(int from, uint64_t begin, uint64_t end, int to);

std::string FolderOf(const std::string& path);
void SyncFolder(const std::string& folder);

// While it lives, a write beyond the process's limit of file sizes fails with an error and doesn't end the process. For the
// calling thread; the process's own handling of the signal stays.
class FileSizeSignalHeld {
 public:
  FileSizeSignalHeld();
  ~FileSizeSignalHeld();
  FileSizeSignalHeld(const FileSizeSignalHeld&) = delete;
  FileSizeSignalHeld& operator=(const FileSizeSignalHeld&) = delete;

 private:
  sigset_t signal_, former_;
  bool wasHeld_;
};

}  // namespace platform
