#include "platform/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "platform/Descriptor.h"

namespace platform {

namespace {

// Dates before the epoch are negative numbers as unsigned ones. The epoch itself, which archives give to files, can't be 0,
// since that means failure: it is the number that as a date would be the year 1677, which no file system can store.
constexpr uint64_t kNanoseconds = 1000000000u;
constexpr uint64_t kDateOfEpoch = uint64_t{1} << 63;

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

// A hidden name beside the file. The end of the name stays, since some readers tell formats by it.
std::string TemporaryBeside(const std::string& path) {
  static std::atomic<unsigned> sCount{0};
  constexpr size_t kLongestKept = 200;
  std::string name = path.substr(path.rfind('/') + 1);
  if (name.size() > kLongestKept) name = name.substr(name.size() - kLongestKept);
  return FolderOf(path) + "/." + std::to_string(getpid()) + "-" + std::to_string(++sCount) + "-" + name;
}

// A new file under a name of that kind.
Descriptor CreateBeside(const std::string& path, std::string& temporary, std::error_code& error) {
  // A program killed in the middle of its work leaves its file behind, and its number may come again.
  constexpr int kMostTries = 100;
  for (int i = 0; i < kMostTries; ++i) {
    temporary = TemporaryBeside(path);
    Descriptor fd(open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666));
    if (fd) return fd;
    error = LastError();
    if (error != std::errc::file_exists) break;
  }
  temporary.clear();
  return Descriptor();
}

Descriptor OpenRegularFile(const std::string& path, struct stat& info, std::error_code& error) {
  // Without waiting: a pipe is refused below and must not hold the program up.
  Descriptor fd(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!fd || fstat(fd.Get(), &info) != 0) {
    error = LastError();
    return Descriptor();
  }
  if (S_ISREG(info.st_mode)) return fd;
  error = std::make_error_code(S_ISDIR(info.st_mode) ? std::errc::is_a_directory : std::errc::not_supported);
  return Descriptor();
}

std::error_code CopyAll(int from, int to) {
  constexpr size_t kPiece = 1u << 30;
  for (;;) {
    const ssize_t copied = copy_file_range(from, nullptr, to, nullptr, kPiece, 0);
    if (copied == 0) break;
    if (copied < 0 && errno != EINTR) break;
  }
  // What the file system could not copy by itself, or all of it. Both descriptors stand where the copying ended.
  std::string piece(65536, '\0');
  for (;;) {
    const ssize_t got = read(from, piece.data(), piece.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got < 0 ? LastError() : std::error_code();
    if (const std::error_code error = WriteAll(to, {piece.data(), static_cast<size_t>(got)})) return error;
  }
}

std::error_code CopyRange(int from, uint64_t begin, uint64_t end, int to) {
  auto at = static_cast<off_t>(begin);
  const auto stop = static_cast<off_t>(end);
  while (at < stop) {
    const ssize_t copied = copy_file_range(from, &at, to, nullptr, static_cast<size_t>(stop - at), 0);
    if (copied == 0 || (copied < 0 && errno != EINTR)) break;
  }
  // What the file system could not copy by itself, or all of it.
  std::string piece(at < stop ? 65536 : 0, '\0');
  while (at < stop) {
    const ssize_t got = pread(from, piece.data(), std::min(piece.size(), static_cast<size_t>(stop - at)), at);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got < 0 ? LastError() : std::make_error_code(std::errc::io_error);  // it became shorter
    if (const std::error_code error = WriteAll(to, {piece.data(), static_cast<size_t>(got)})) return error;
    at += got;
  }
  return {};
}

void SyncFolder(const std::string& folder) {
  const Descriptor fd(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (fd) fsync(fd.Get());
}

// The file behind a symbolic link, so that the link stays when the file is replaced.
std::string BehindLinks(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_symlink(path, error)) return path;
  const std::filesystem::path target = std::filesystem::canonical(path, error);
  return error ? path : target.string();
}

// The new file takes after the one that it is to replace.
std::error_code TakeAfter(int fd, const struct stat& info) {
  // A program that runs as root leaves a user's file the user's; the mode comes last, since a new owner takes bits away.
  if (geteuid() == 0 && info.st_uid != 0 && fchown(fd, info.st_uid, info.st_gid) != 0) return LastError();
  return fchmod(fd, info.st_mode & 07777) == 0 ? std::error_code() : LastError();
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
  struct stat info;
  std::error_code error;
  const Descriptor fd = OpenRegularFile(path, info, error);
  if (!fd) return error;
  // A file may tell of any size without taking room on the disk.
  static const uint64_t sMemory =
      static_cast<uint64_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<uint64_t>(sysconf(_SC_PAGE_SIZE));
  if (static_cast<uint64_t>(info.st_size) >= sMemory) return std::make_error_code(std::errc::file_too_large);
  std::string bytes;
  // One byte more than the file has, so that its end is seen without growing.
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

StagedFile::~StagedFile() {
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

template <class Writer>
std::error_code StagedFile::StageWith(const std::string& path, const Writer& write) {
  path_ = BehindLinks(path);
  struct stat info;
  const bool exists = stat(path_.c_str(), &info) == 0;
  if (exists && !S_ISREG(info.st_mode)) {
    return std::make_error_code(S_ISDIR(info.st_mode) ? std::errc::is_a_directory : std::errc::not_supported);
  }
  std::error_code error;
  const Descriptor fd = CreateBeside(path_, temporary_, error);
  if (!fd) return error;
  error = exists ? TakeAfter(fd.Get(), info) : std::error_code();
  if (!error) error = write(fd.Get());
  return !error && fsync(fd.Get()) != 0 ? LastError() : error;
}

std::error_code StagedFile::Stage(const std::string& path, std::string_view bytes) {
  return StageWith(path, [&](int fd) { return WriteAll(fd, bytes); });
}

std::error_code StagedFile::StageCopy(const std::string& path, const std::string& from) {
  struct stat info;
  std::error_code error;
  const Descriptor source = OpenRegularFile(from, info, error);
  return source ? StageWith(path, [&](int fd) { return CopyAll(source.Get(), fd); }) : error;
}

std::error_code StagedFile::StagePieces(const std::string& path, int from, const std::vector<FilePiece>& pieces) {
  return StageWith(path, [&](int fd) {
    std::error_code error;
    for (const FilePiece& piece : pieces) {
      if (!error) error = WriteAll(fd, piece.bytes);
      if (!error) error = CopyRange(from, piece.begin, piece.end, fd);
    }
    return error;
  });
}

std::error_code StagedFile::Commit() {
  const Descriptor fd(open(temporary_.c_str(), O_RDONLY | O_CLOEXEC));
  if (!fd) return LastError();
  // Whoever changed the staged file may have put a new one in its place, with a mode of its own.
  struct stat info;
  if (stat(path_.c_str(), &info) == 0) {
    if (const std::error_code error = TakeAfter(fd.Get(), info)) return error;
  }
  // Costs nothing unless the staged file was changed.
  if (fsync(fd.Get()) != 0) return LastError();
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
  StagedFile file;
  const std::error_code error = file.StageCopy(to, from);
  return error ? error : file.Commit();
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
