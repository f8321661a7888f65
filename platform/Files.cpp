#include "platform/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <filesystem>

#include "platform/LocalSocket.h"

namespace platform {

namespace {

std::error_code LastError() { return {errno, std::generic_category()}; }

std::error_code WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(fd, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return LastError();
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return {};
}

std::string FolderOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// A name beside the file that no other writer uses.
std::string TemporaryBeside(const std::string& path) {
  static std::atomic<unsigned> sCount{0};
  const size_t slash = path.rfind('/');
  const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
  return FolderOf(path) + "/." + name.substr(0, 200) + "." + std::to_string(getpid()) + "." + std::to_string(++sCount);
}

void SyncFolder(const std::string& folder) {
  const Descriptor fd(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (fd) fsync(fd.Get());
}

std::error_code WriteNew(const std::string& path, std::string_view bytes, mode_t mode) {
  const Descriptor fd(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!fd) return LastError();
  if (const std::error_code error = WriteAll(fd.Get(), bytes)) return error;
  if (fchmod(fd.Get(), mode) != 0 || fsync(fd.Get()) != 0) return LastError();
  return {};
}

mode_t OrdinaryMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

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
  const Descriptor fd(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!fd) return LastError();
  struct stat info;
  if (fstat(fd.Get(), &info) != 0) return LastError();
  if (S_ISDIR(info.st_mode)) return std::make_error_code(std::errc::is_a_directory);
  std::string bytes;
  bytes.resize(static_cast<size_t>(info.st_size));
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

StagedFile::~StagedFile() {
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

std::error_code StagedFile::Stage(const std::string& path, std::string_view bytes) {
  struct stat info;
  const bool exists = stat(path.c_str(), &info) == 0;
  if (exists && S_ISDIR(info.st_mode)) return std::make_error_code(std::errc::is_a_directory);
  path_ = path;
  temporary_ = TemporaryBeside(path);
  return WriteNew(temporary_, bytes, exists ? info.st_mode & 07777 : OrdinaryMode());
}

std::error_code StagedFile::Commit() {
  if (rename(temporary_.c_str(), path_.c_str()) != 0) return LastError();
  temporary_.clear();
  SyncFolder(FolderOf(path_));
  return {};
}

std::error_code ReplaceFile(const std::string& path, std::string_view bytes) {
  StagedFile file;
  const std::error_code error = file.Stage(path, bytes);
  return error ? error : file.Commit();
}

std::error_code CopyFile(const std::string& from, const std::string& to) {
  std::string content;
  if (const std::error_code error = ReadFile(from, content)) return error;
  return ReplaceFile(to, content);
}

std::error_code MakeFolder(const std::string& path, unsigned mode) {
  if (FolderExists(path)) return {};
  const std::string above = FolderOf(path);
  if (above != path && above != "." && above != "/") {
    if (const std::error_code error = MakeFolder(above, 0755)) return error;
  }
  if (mkdir(path.c_str(), static_cast<mode_t>(mode)) != 0 && errno != EEXIST) return LastError();
  return FolderExists(path) ? std::error_code() : std::make_error_code(std::errc::not_a_directory);
}

std::error_code RemoveTree(const std::string& path) {
  std::error_code error;
  std::filesystem::remove_all(path, error);
  return error;
}

uint64_t GetFileModificationDate(const std::string& path) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0 || info.st_mtim.tv_sec < 0) return 0;
  return static_cast<uint64_t>(info.st_mtim.tv_sec) * 1000000000u + static_cast<uint64_t>(info.st_mtim.tv_nsec);
}

bool SetFileModificationDate(const std::string& path, uint64_t date) {
  timespec times[2];
  times[0].tv_sec = 0;
  times[0].tv_nsec = UTIME_OMIT;
  times[1].tv_sec = static_cast<time_t>(date / 1000000000u);
  times[1].tv_nsec = static_cast<long>(date % 1000000000u);
  return utimensat(AT_FDCWD, path.c_str(), times, 0) == 0;
}

std::string DescribeError(const std::error_code& error) { return error.message(); }

}  // namespace platform
