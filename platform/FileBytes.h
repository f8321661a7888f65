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
std::error_code WriteAllAt(int fd, uint64_t offset, std::string_view bytes);
// Fills `bytes`; std::errc::io_error if the file ends before.
std::error_code ReadAllAt(int fd, uint64_t offset, std::string& bytes);
// Copies from one open file to another, to where that stands: all from where the first stands up to its end, or the range
// [begin, end) of it. The file system shares or copies the bytes by itself where it can.
std::error_code CopyAll(int from, int to);
std::error_code CopyRange(int from, uint64_t begin, uint64_t end, int to);

std::string FolderOf(const std::string& path);
// The last part of the path, cut to what leaves room for a prefix; its end stays, since some readers tell formats by it.
std::string NameOf(const std::string& path);
// The file behind a symbolic link, so that the link stays when the file is replaced.
std::string BehindLinks(const std::string& path);
// The path of a hidden file beside the one that `info` is of, by which an interrupted write is found: ".KIND-INODE-NAME".
std::string HiddenBeside(const std::string& path, const char* kind, const struct stat& info);
// Whether what stands there was put there by the owner of the file that `info` is of, or by this user. In a folder that
// others may write to, the name alone proves nothing.
bool IsOwnFile(const std::string& hidden, const struct stat& info);
void SyncFolder(const std::string& folder);

// Finishes what PatchFile was killed in; nothing to do is no error. `path` leads through no link.
std::error_code FinishPatch(const std::string& path, const struct stat& info);

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
