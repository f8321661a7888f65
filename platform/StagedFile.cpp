// StagedFile of platform/Files.h and the functions that use it.
#include <fcntl.h>
#include <linux/limits.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/Descriptor.h"
#include "platform/FileBytes.h"
#include "platform/Files.h"
#include "platform/Trace.h"

namespace platform {

namespace {

// Returns a hidden name beside the file.
std::string TemporaryBeside(const std::string& path) {
  static std::atomic<unsigned> sCount{0};
  return FolderOf(path) + "/." + std::to_string(getpid()) + "-" + std::to_string(++sCount) + "-" + NameOf(path);
}

// Creates something under such a name: `make` gets the path and returns a negative number with errno on failure.
template <class Make>
int CreateBeside(const std::string& path, std::string& temporary, std::error_code& error, const Make& make) {
  // A killed program leaves its file, and its process number may be reused.
  constexpr int kMostTries = 100;
  for (int i = 0; i < kMostTries; ++i) {
    temporary = TemporaryBeside(path);
    const int made = make(temporary.c_str());
    if (made >= 0) return made;
    error = LastError();
    if (error != std::errc::file_exists) break;
  }
  temporary.clear();
  return -1;
}

int CreateFile(const char* path) { return open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666); }

// True for attributes that users or their programs set. The system's own attributes (security.*) follow from the folder
// and the rights of the process; if it refuses them, they are its own to set.
bool IsOfUser(std::string_view name) { return name.starts_with("user.") || name.starts_with("system.posix_acl_"); }

std::error_code CopyAttributes(const std::string& path, int to) {
  const ssize_t size = listxattr(path.c_str(), nullptr, 0);
  if (size <= 0) return size == 0 || errno == ENOTSUP ? std::error_code() : LastError();
  std::string names(static_cast<size_t>(size), '\0');
  const ssize_t filled = listxattr(path.c_str(), names.data(), names.size());
  if (filled < 0) return LastError();
  for (size_t at = 0; at < static_cast<size_t>(filled); at += std::strlen(&names[at]) + 1) {
    const char* name = &names[at];
    std::string value(XATTR_SIZE_MAX, '\0');
    const ssize_t length = getxattr(path.c_str(), name, value.data(), value.size());
    const bool isCopied = length >= 0 && fsetxattr(to, name, value.data(), static_cast<size_t>(length), 0) == 0;
    if (!isCopied && IsOfUser(name)) return LastError();
  }
  return {};
}

// Gives the new file the owner and mode of the file it replaces.
std::error_code TakeAfter(int fd, const std::string& path, const struct stat& info) {
  // As root, keep a user's file the user's. Set the mode last, because changing the owner clears bits.
  if (geteuid() == 0 && info.st_uid != 0 && fchown(fd, info.st_uid, info.st_gid) != 0) return LastError();
  if (const std::error_code error = CopyAttributes(path, fd)) return error;
  return fchmod(fd, info.st_mode & 07777) == 0 ? std::error_code() : LastError();
}

// The path of the complete new content while a file with several names is overwritten.
std::string UnfinishedBeside(const std::string& path, const struct stat& info) {
  return HiddenBeside(path, "unfinished", info);
}

// Overwrites a file with the content of another; it stays the same file.
std::error_code Overwrite(const std::string& path, const std::string& content, bool* isBegun) {
  const FileSizeSignalHeld held;
  struct stat info;
  std::error_code error;
  const Descriptor from = OpenRegularFile(content, info, error);
  if (!from) return error;
  const Descriptor to(open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW));
  if (!to) return LastError();
  // Fail for lack of space before anything changes.
  if (info.st_size > 0 && fallocate(to.Get(), FALLOC_FL_KEEP_SIZE, 0, info.st_size) != 0 && errno != EOPNOTSUPP) {
    return LastError();
  }
  *isBegun = true;
  error = CopyRange(from.Get(), 0, kToItsEnd, to.Get());
  if (!error && ftruncate(to.Get(), info.st_size) != 0) error = LastError();
  return !error && fsync(to.Get()) != 0 ? LastError() : error;
}

}  // namespace

StagedFile::~StagedFile() {
  if (!temporary_.empty()) unlink(temporary_.c_str());
  if (!folder_.empty()) RemoveTree(folder_);
}

template <class Writer>
std::error_code StagedFile::StageWith(const std::string& path, const char* name, const Writer& write) {
  std::error_code error = FinishInterruptedWrite(path);
  if (error) return error;
  path_ = BehindLinks(path);
  struct stat info;
  const bool exists = stat(path_.c_str(), &info) == 0;
  if (exists && !S_ISREG(info.st_mode)) {
    return std::make_error_code(S_ISDIR(info.st_mode) ? std::errc::is_a_directory : std::errc::not_supported);
  }
  Descriptor fd;
  if (name) {
    CreateBeside(path_, folder_, error, [](const char* folder) { return mkdir(folder, 0700); });
    if (!folder_.empty()) {
      temporary_ = folder_ + "/" + name;
      fd = Descriptor(CreateFile(temporary_.c_str()));
      if (!fd) error = LastError();
    }
  } else {
    fd = Descriptor(CreateBeside(path_, temporary_, error, &CreateFile));
  }
  if (!fd) return error;
  const FileSizeSignalHeld held;
  error = exists ? TakeAfter(fd.Get(), path_, info) : std::error_code();
  if (!error) error = write(fd.Get());
  return !error && fsync(fd.Get()) != 0 ? LastError() : error;
}

std::error_code StagedFile::Stage(const std::string& path, std::string_view bytes) {
  return StageWith(path, nullptr, [&](int fd) { return WriteAll(fd, bytes); });
}

std::error_code StagedFile::StageCopy(const std::string& path, const std::string& from, const char* name) {
  struct stat info;
  std::error_code error;
  const Descriptor source = OpenRegularFile(from, info, error);
  return source ? StageWith(path, name, [&](int fd) { return CopyRange(source.Get(), 0, kToItsEnd, fd); }) : error;
}

std::error_code StagedFile::StagePieces(const std::string& path, int from, const std::vector<FilePiece>& pieces) {
  return StageWith(path, nullptr, [&](int fd) {
    std::error_code error;
    for (const FilePiece& piece : pieces) {
      if (!error) error = WriteAll(fd, piece.bytes);
      if (!error) error = CopyRange(from, piece.begin, piece.end, fd);
    }
    return error;
  });
}

std::error_code StagedFile::Commit() {
  const FileSizeSignalHeld held;
  const Descriptor fd(open(temporary_.c_str(), O_RDONLY | O_CLOEXEC));
  if (!fd) return LastError();
  // Another program may have replaced the staged file by one with another mode.
  struct stat info;
  const bool exists = stat(path_.c_str(), &info) == 0;
  if (exists) {
    if (const std::error_code error = TakeAfter(fd.Get(), path_, info)) return error;
  }
  // Cheap unless the staged file was changed.
  if (fsync(fd.Get()) != 0) return LastError();
  if (exists && info.st_nlink > 1) return CommitInPlace(UnfinishedBeside(path_, info));
  if (rename(temporary_.c_str(), path_.c_str()) != 0) return LastError();
  temporary_.clear();
  SyncFolder(FolderOf(path_));
  return {};
}

// A rename would separate the file from its other names. While its content is overwritten, the complete new content is
// beside it, under a name that FinishInterruptedWrite finds.
std::error_code StagedFile::CommitInPlace(const std::string& unfinished) {
  if (rename(temporary_.c_str(), unfinished.c_str()) != 0) return LastError();
  temporary_ = unfinished;
  SyncFolder(FolderOf(path_));
  bool isBegun = false;
  const std::error_code error = Overwrite(path_, unfinished, &isBegun);
  if (error && isBegun) {
    ReportProblem(path_ + ": " + DescribeError(error) + "; its whole new content is in " + unfinished);
    temporary_.clear();  // keep the file
  }
  if (error) return error;
  unlink(unfinished.c_str());
  temporary_.clear();
  return {};
}

std::error_code FinishInterruptedWrite(const std::string& path) {
  const std::string target = BehindLinks(path);
  struct stat info;
  if (stat(target.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return {};
  if (const std::error_code error = FinishPatch(target, info)) return error;
  const std::string unfinished = UnfinishedBeside(target, info);
  if (!IsOwnFile(unfinished, info)) return {};
  bool isBegun = false;
  if (const std::error_code error = Overwrite(target, unfinished, &isBegun)) return error;
  unlink(unfinished.c_str());
  ReportProblem(target + ": a save that was interrupted is finished");
  return {};
}

std::error_code ReplaceFile(const std::string& path, std::string_view bytes) {
  StagedFile file;
  const std::error_code error = file.Stage(path, bytes);
  return error ? error : file.Commit();
}

std::error_code ReplaceFileUnsynced(const std::string& path, std::string_view bytes) {
  const std::string unfinished = FolderOf(path) + "/." + NameOf(path) + ".new";
  const Descriptor file(open(unfinished.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!file) return LastError();
  const FileSizeSignalHeld held;
  std::error_code error = WriteAll(file.Get(), bytes);
  if (!error && rename(unfinished.c_str(), path.c_str()) != 0) error = LastError();
  if (error) unlink(unfinished.c_str());
  return error;
}

std::error_code CopyFile(const std::string& from, const std::string& to) {
  StagedFile file;
  const std::error_code error = file.StageCopy(to, from);
  return error ? error : file.Commit();
}

}  // namespace platform
