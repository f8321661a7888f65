// Reading and writing open files, for the sources that implement platform/Files.h.
#pragma once

#include <sys/stat.h>

#include <csignal>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/Descriptor.h"
#include "platform/LastError.h"

namespace platform {

// Opens a regular file. Fails for anything else like ReadFile, without waiting for it.
Descriptor OpenRegularFile(const std::string& path, struct stat& info, std::error_code& error);

std::error_code WriteAll(int fd, std::string_view bytes);
std::error_code WriteAllAt(int fd, uint64_t offset, std::string_view bytes);
// Fills `bytes`. Fails with std::errc::io_error if the file ends before that.
std::error_code ReadAllAt(int fd, uint64_t offset, std::string& bytes);
// Copies the range [begin, end) of one open file to the position of the other. The file system shares or copies the
// bytes by itself where it can. std::errc::io_error if the file ends before `end`, unless that is kToItsEnd.
inline constexpr uint64_t kToItsEnd = INT64_MAX;
std::error_code CopyRange(int from, uint64_t begin, uint64_t end, int to);

std::string FolderOf(const std::string& path);
// Returns the last part of the path, shortened to leave room for a prefix. Keeps its end, because some readers detect
// formats by it.
std::string NameOf(const std::string& path);
// Returns the target of a symbolic link, so that the link stays when the file is replaced.
std::string BehindLinks(const std::string& path);
// Returns the path of a hidden file beside the file of `info`, with which an interrupted write is found:
// ".KIND-INODE-NAME".
std::string HiddenBeside(const std::string& path, const char* kind, const struct stat& info);
// True if `hidden` was created by this user or by the owner of the file of `info`. In a folder that others may write
// to, the name alone proves nothing.
bool IsOwnFile(const std::string& hidden, const struct stat& info);
void SyncFolder(const std::string& folder);

// Completes an interrupted PatchFile. Nothing to do is a success. `path` contains no link at its end.
std::error_code FinishPatch(const std::string& path, const struct stat& info);

// During its life, a write of this thread that exceeds the process's limit of file sizes fails with an error instead of
// ending the process. The process's own handling of the signal stays.
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
