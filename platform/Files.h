// Reads files, replaces them atomically, and handles their dates. Thread-safe. Functions that return std::error_code
// return an empty one on success.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/Descriptor.h"
#include "platform/Export.h"

namespace platform {

PLATFORM_API bool FileExists(const std::string& path);  // a file, a folder or anything else
PLATFORM_API bool FolderExists(const std::string& path);

// Reads a regular file. On failure `content` is unchanged. Fails with std::errc::is_a_directory for a folder, with
// std::errc::not_supported for anything else that is not a file (a pipe, a device), without waiting for it, and with
// std::errc::file_too_large for a file larger than the machine's memory.
PLATFORM_API std::error_code ReadFile(const std::string& path, std::string& content);
// Returns the error with which ReadFile would fail to open the file.
PLATFORM_API std::error_code CheckReadable(const std::string& path);
// Replaces the file at `path` atomically: writes a temporary file beside it, syncs it and renames it. Keeps the mode,
// the extended attributes and the access lists of an existing file, and its owner if this program runs as root.
// Replaces the target of a symbolic link and keeps the link. On failure the old file is unchanged and nothing is left
// beside it.
//
// A file with several names (hard links) stays one file: it is overwritten in place while a complete copy of the new
// content is beside it (".unfinished-..."). A reader at that moment may see a mixture. If the program ends or the disk
// fails there, the copy stays, and FinishInterruptedWrite completes the write.
PLATFORM_API std::error_code ReplaceFile(const std::string& path, std::string_view bytes);
// Replaces a file that can be made again, without waiting for the disk: a killed program leaves the old file or the new
// one, a power failure perhaps an empty one. The new file is beside it as ".NAME.new" until it is complete. One program
// at a time may replace it.
PLATFORM_API std::error_code ReplaceFileUnsynced(const std::string& path, std::string_view bytes);
// Replaces `old` at the offset by the same number of other bytes, all or none: a journal beside the file (".patch-...")
// contains both until the file has the new ones. A reader at that moment may see a mixture. FinishInterruptedWrite
// completes what a killed program or machine left. If the file does not contain `old`, fails with
// std::errc::operation_canceled and changes nothing. On failure the old bytes are there, or the journal stays.
PLATFORM_API std::error_code PatchFile(const std::string& path, uint64_t offset, std::string_view old,
                                       std::string_view bytes);
// Completes an interrupted write, as described above. Nothing to do is a success. Staging and patching a file call it,
// too.
PLATFORM_API std::error_code FinishInterruptedWrite(const std::string& path);
// A part of a new file: bytes, followed by the range [begin, end) of the old file.
struct FilePiece {
  std::string bytes;
  uint64_t begin = 0;
  uint64_t end = 0;
};
// Like ReplaceFile but in two steps, for a writer that notifies others in between. Everything that usually fails
// (space, rights) happens in the Stage functions. Without Commit the staged file is deleted with the object.
class PLATFORM_API StagedFile {
 public:
  StagedFile() = default;
  ~StagedFile();
  StagedFile(const StagedFile&) = delete;
  StagedFile& operator=(const StagedFile&) = delete;
  // Call one of the Stage functions, once.
  std::error_code Stage(const std::string& path, std::string_view bytes);
  // With `name`, the file is staged under this name in a hidden folder of its own, for programs that create files
  // beside it.
  std::error_code StageCopy(const std::string& path, const std::string& from, const char* name = nullptr);
  // The ranges are in the open file `from`. The kernel copies them, or shares them if the file system can.
  std::error_code StagePieces(const std::string& path, int from, const std::vector<FilePiece>& pieces);
  // The staged file before Commit: a hidden file beside the other or, with `name`, in its folder. Without `name` it has
  // the same extension. It may be changed, or replaced by another file with that name.
  const std::string& TemporaryPath() const { return temporary_; }
  std::error_code Commit();

 private:
  template <class Writer>
  std::error_code StageWith(const std::string& path, const char* name, const Writer& write);
  std::error_code CommitInPlace(const std::string& unfinished);

  std::string path_;
  std::string temporary_;  // empty unless staged and not committed
  std::string folder_;     // the hidden folder, if there is one
};
// Copies a regular file to a new place, or replaces the file there like ReplaceFile.
PLATFORM_API std::error_code CopyFile(const std::string& from, const std::string& to);
// Renames. Never replaces an existing file: std::errc::file_exists.
PLATFORM_API std::error_code MoveFile(const std::string& from, const std::string& to);
// Creates the folder, with this mode, and its parents. An existing folder is a success.
PLATFORM_API std::error_code MakeFolder(const std::string& path, unsigned mode = 0755);
// Creates the folder like MakeFolder with mode 0700 and opens it (O_PATH). Refuses a folder of another user or with a
// wider mode: std::errc::permission_denied.
PLATFORM_API Descriptor OpenPrivateFolder(const std::string& path, std::error_code& error);
PLATFORM_API std::error_code RemoveTree(const std::string& path);

// Returns the modification date in nanoseconds since the epoch, for SetFileModificationDate; 0 means failure. Dates at
// or before the epoch are large numbers, so that every file has a date.
PLATFORM_API uint64_t GetFileModificationDate(const std::string& path);
PLATFORM_API bool SetFileModificationDate(const std::string& path, uint64_t date);

// Returns one line for people: "No such file", "Permission denied" and so on.
PLATFORM_API std::string DescribeError(const std::error_code& error);

}  // namespace platform
