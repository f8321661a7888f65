#include "platform/FileBytes.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <filesystem>

namespace platform {

Descriptor OpenRegularFile(const std::string& path, struct stat& info, std::error_code& error) {
  // O_NONBLOCK: a pipe is refused below and must not block the program.
  Descriptor fd(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!fd || fstat(fd.Get(), &info) != 0) {
    error = LastError();
    return Descriptor();
  }
  if (S_ISREG(info.st_mode)) return fd;
  error = std::make_error_code(S_ISDIR(info.st_mode) ? std::errc::is_a_directory : std::errc::not_supported);
  return Descriptor();
}

std::error_code WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(fd, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return LastError();
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return {};
}

std::error_code WriteAllAt(int fd, uint64_t offset, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = pwrite(fd, bytes.data(), bytes.size(), static_cast<off_t>(offset));
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return LastError();
    bytes.remove_prefix(static_cast<size_t>(written));
    offset += static_cast<uint64_t>(written);
  }
  return {};
}

std::error_code ReadAllAt(int fd, uint64_t offset, std::string& bytes) {
  for (size_t have = 0; have < bytes.size();) {
    const ssize_t got = pread(fd, bytes.data() + have, bytes.size() - have, static_cast<off_t>(offset + have));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got < 0 ? LastError() : std::make_error_code(std::errc::io_error);
    have += static_cast<size_t>(got);
  }
  return {};
}

namespace {

constexpr off_t kPage = 4096;

// Has the disk write a copy while the rest of it is made, so that the sync at its end has less to wait for.
class EarlyWriting {
 public:
  explicit EarlyWriting(int fd) : fd_(fd), begin_(lseek(fd, 0, SEEK_CUR)) {}
  // Call it when more bytes are in the file. A hint only: the sync reports what fails.
  void Add(off_t size) {
    constexpr off_t kLeast = off_t{4} << 20;
    size_ += size;
    if (size_ < kLeast) return;
    sync_file_range(fd_, begin_, size_, SYNC_FILE_RANGE_WRITE);
    begin_ += size_;
    size_ = 0;
  }

 private:
  const int fd_;
  off_t begin_, size_ = 0;
};

// Copies from `at` on until the kernel refuses or the range ends, and moves `at`. The kernel copies bytes whose place
// within their page changes in small pieces, which takes longer than a buffer does; those it does not get.
void CopyByKernel(int from, off_t& at, off_t stop, int to, EarlyWriting& early) {
  constexpr off_t kMost = off_t{4} << 20;
  bool goesOn = (at - lseek(to, 0, SEEK_CUR)) % kPage == 0;
  while (goesOn && at < stop) {
    const ssize_t copied = copy_file_range(from, &at, to, nullptr, static_cast<size_t>(std::min(stop - at, kMost)), 0);
    goesOn = copied > 0 || (copied < 0 && errno == EINTR);
    if (copied > 0) early.Add(copied);
  }
}

}  // namespace

std::error_code CopyRange(int from, uint64_t begin, uint64_t end, int to) {
  constexpr off_t kBuffer = off_t{1} << 20;
  auto at = static_cast<off_t>(begin);
  const auto stop = static_cast<off_t>(end);
  EarlyWriting early(to);
  CopyByKernel(from, at, stop, to, early);
  std::string piece(at < stop ? static_cast<size_t>(kBuffer) : 0, '\0');
  // All pieces but the first are written to whole pages.
  for (off_t most = kBuffer - lseek(to, 0, SEEK_CUR) % kPage; at < stop; most = kBuffer) {
    const ssize_t got = pread(from, piece.data(), static_cast<size_t>(std::min(stop - at, most)), at);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return LastError();
    if (got == 0) return end == kToItsEnd ? std::error_code() : std::make_error_code(std::errc::io_error);
    if (const std::error_code error = WriteAll(to, {piece.data(), static_cast<size_t>(got)})) return error;
    at += got;
    early.Add(got);
  }
  return {};
}

std::string FolderOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string NameOf(const std::string& path) {
  constexpr size_t kLongestKept = 200;
  const std::string name = path.substr(path.rfind('/') + 1);
  return name.size() > kLongestKept ? name.substr(name.size() - kLongestKept) : name;
}

std::string BehindLinks(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_symlink(path, error)) return path;
  const std::filesystem::path target = std::filesystem::canonical(path, error);
  return error ? path : target.string();
}

std::string HiddenBeside(const std::string& path, const char* kind, const struct stat& info) {
  return FolderOf(path) + "/." + kind + "-" + std::to_string(info.st_ino) + "-" + NameOf(path);
}

bool IsOwnFile(const std::string& hidden, const struct stat& info) {
  struct stat there;
  if (lstat(hidden.c_str(), &there) != 0 || !S_ISREG(there.st_mode)) return false;
  return there.st_uid == info.st_uid || there.st_uid == geteuid();
}

void SyncFolder(const std::string& folder) {
  const Descriptor fd(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (fd) fsync(fd.Get());
}

FileSizeSignalHeld::FileSizeSignalHeld() {
  sigemptyset(&signal_);
  sigaddset(&signal_, SIGXFSZ);
  pthread_sigmask(SIG_BLOCK, &signal_, &former_);
  wasHeld_ = sigismember(&former_, SIGXFSZ) == 1;
}

FileSizeSignalHeld::~FileSizeSignalHeld() {
  if (wasHeld_) return;
  // Removes pending signals of this thread's writes, which were reported as errors.
  const timespec now{};
  while (sigtimedwait(&signal_, nullptr, &now) > 0) {
  }
  pthread_sigmask(SIG_SETMASK, &former_, nullptr);
}

}  // namespace platform
