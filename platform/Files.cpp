#include "platform/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "platform/Descriptor.h"
#include "platform/FileBytes.h"

namespace platform {

namespace {

// Dates before the epoch wrap around to large numbers. The epoch itself, which archives assign to files, cannot be 0,
// because that means failure. It is stored as the number that would be the year 1677, which no file system can store.
constexpr uint64_t kNanoseconds = 1000000000u;
constexpr uint64_t kDateOfEpoch = uint64_t{1} << 63;

}  // namespace

bool FileExists(const std::string& path) {
  struct stat info;
  return stat(path.c_str(), &info) == 0;
}

bool FolderExists(const std::string& path) {
  struct stat info;
  return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

std::error_code ReadFile(const std::string& path, std::string& content) {
  struct stat info;
  std::error_code error;
  const Descriptor fd = OpenRegularFile(path, info, error);
  if (!fd) return error;
  // A file can claim any size without using disk space.
  static const uint64_t sMemory =
      static_cast<uint64_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<uint64_t>(sysconf(_SC_PAGE_SIZE));
  if (static_cast<uint64_t>(info.st_size) >= sMemory) return std::make_error_code(std::errc::file_too_large);
  std::string bytes;
  // One byte more than the file has, to see its end without growing the buffer.
  bytes.resize(static_cast<size_t>(info.st_size) + 1);
  size_t filled = 0;
  for (;;) {
    if (filled == bytes.size()) bytes.resize(bytes.size() + 65536);
    const ssize_t got = read(fd.Get(), bytes.data() + filled, bytes.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return LastError();
    if (got == 0) break;
    filled += static_cast<size_t>(got);
  }
  bytes.resize(filled);
  content = std::move(bytes);
  return {};
}

std::error_code CheckReadable(const std::string& path) {
  struct stat info;
  std::error_code error;
  OpenRegularFile(path, info, error);
  return error;
}

std::error_code MoveFile(const std::string& from, const std::string& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) != 0) return LastError();
  SyncFolder(FolderOf(to));
  return {};
}

std::error_code MakeFolder(const std::string& path, unsigned mode) {
  if (FolderExists(path)) return {};
  if (path.size() > 1 && path.back() == '/') return MakeFolder(path.substr(0, path.size() - 1), mode);
  const std::string above = FolderOf(path);
  if (above != path && above != "." && above != "/") {
    if (const std::error_code error = MakeFolder(above, 0755)) return error;
  }
  if (mkdir(path.c_str(), static_cast<mode_t>(mode)) != 0 && errno != EEXIST) return LastError();
  return FolderExists(path) ? std::error_code() : std::make_error_code(std::errc::not_a_directory);
}

Descriptor OpenPrivateFolder(const std::string& path, std::error_code& error) {
  error = MakeFolder(path, 0700);
  if (error) return Descriptor();
  Descriptor folder(open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  struct stat info;
  if (!folder || fstat(folder.Get(), &info) != 0) {
    error = LastError();
    return Descriptor();
  }
  if (info.st_uid == geteuid() && (info.st_mode & 0077) == 0) return folder;
  error = std::make_error_code(std::errc::permission_denied);
  return Descriptor();
}

std::error_code RemoveTree(const std::string& path) {
  std::error_code error;
  std::filesystem::remove_all(path, error);
  return error;
}

uint64_t GetFileModificationDate(const std::string& path) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0) return 0;
  const auto date =
      static_cast<uint64_t>(info.st_mtim.tv_sec) * kNanoseconds + static_cast<uint64_t>(info.st_mtim.tv_nsec);
  return date == 0 ? kDateOfEpoch : date;
}

bool SetFileModificationDate(const std::string& path, uint64_t date) {
  timespec times[2];
  times[0].tv_sec = 0;
  times[0].tv_nsec = UTIME_OMIT;
  const auto signedDate = static_cast<int64_t>(date == kDateOfEpoch ? 0 : date);
  constexpr auto kSecond = static_cast<int64_t>(kNanoseconds);
  const int64_t fraction = (signedDate % kSecond + kSecond) % kSecond;
  times[1].tv_sec = (signedDate - fraction) / kSecond;
  times[1].tv_nsec = fraction;
  return utimensat(AT_FDCWD, path.c_str(), times, 0) == 0;
}

std::string DescribeError(const std::error_code& error) { return error.message(); }

}  // namespace platform
