// Whole files, replaced whole or not at all, and their dates.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/Descriptor.h"
#include "platform/Export.h"

namespace platform {

PLATFORM_API bool FileExists(const std::string& path);  // anything at all stands there
PLATFORM_API bool FolderExists(const std::string& path);

// Reads a regular file; on failure the content is untouched. A folder gives std::errc::is_a_directory, anything else that
// is no file (a pipe, a device) std::errc::not_supported, without waiting for it; one that is larger than the machine's
// memory std::errc::file_too_large.
PLATFORM_API std::error_code ReadFile(const std::string& path, std::string& content);
// What ReadFile would fail with when it opens the file.
PLATFORM_API std::error_code CheckReadable(const std::string& path);
// Puts bytes in place of the file at path, whole or not at all: written beside, synced, renamed. The mode, the extended
// attributes and the access lists of an existing file are kept, and its owner if this program runs as root; a symbolic link
// stays, and the file behind it is replaced. On failure the old file is untouched and nothing is left beside it.
//
// A file with several names (hard links) stays one file for all of them: it is written over in place while the new content
// stands whole beside it (".unfinished-..."). Who reads it in that moment may see half of each; a program that ends or a
// disk that fails there leaves the content beside it, which FinishInterruptedWrite puts in place.
PLATFORM_API std::error_code ReplaceFile(const std::string& path, std::string_view bytes);
// Replaces `old` at the offset by as many other bytes, whole or not at all: both stand in a journal beside the file
// (".patch-...") until the file holds the new ones. Who reads it in that moment may see a part of each; what a killed
// program or machine left is finished by FinishInterruptedWrite. If the file holds something else than `old`,
// std::errc::operation_canceled with nothing changed. On failure the old bytes are there, or the journal stays.
PLATFORM_API std::error_code PatchFile(const std::string& path, uint64_t offset, std::string_view old,
                                       std::string_view bytes);
// Finishes what a process was killed in, as told above; nothing to do is no error. Staging and patching a file do it too.
PLATFORM_API std::error_code FinishInterruptedWrite(const std::string& path);
// A part of a new file: bytes, and behind them the range [begin, end) of the file that it is made from.
struct FilePiece {
  std::string bytes;
  uint64_t begin = 0;
  uint64_t end = 0;
};
// The same in two steps, for a writer that has to tell others between them: everything that usually fails (space, rights)
// happens in Stage. Not committed, it goes away with the object and leaves nothing behind.
class PLATFORM_API StagedFile {
 public:
  StagedFile() = default;
  ~StagedFile();
  StagedFile(const StagedFile&) = delete;
  StagedFile& operator=(const StagedFile&) = delete;
  // One of these, once.
  std::error_code Stage(const std::string& path, std::string_view bytes);
  // With a name, it is staged under this name in a hidden folder of its own, for a program that makes files beside it.
  std::error_code StageCopy(const std::string& path, const std::string& from, const char* name = nullptr);
  // Ranges are of the open file `from`. Its content passes through the kernel, or is shared where the file system can.
  std::error_code StagePieces(const std::string& path, int from, const std::vector<FilePiece>& pieces);
  // The staged file until the commit, hidden beside the other; without a name of its own it has the same extension. It may
  // be changed in place, or replaced by another of that name.
  const std::string& TemporaryPath() const { return temporary_; }
  std::error_code Commit();

 private:
  template <class Writer>
  std::error_code StageWith(const std::string& path, const char* name, const Writer& write);
  std::error_code CommitInPlace(const std::string& unfinished);

  std::string path_;
  std::string temporary_;  // empty unless staged and not yet committed
  std::string folder_;     // the hidden folder, if there is one
};
// Copies a regular file to a place where none stands yet or replaces the one there, like ReplaceFile.
PLATFORM_API std::error_code CopyFile(const std::string& from, const std::string& to);
// Renames; a file that stands at the new name is never replaced: std::errc::file_exists.
PLATFORM_API std::error_code MoveFile(const std::string& from, const std::string& to);
// Makes the folder and those above it, the last with this mode; an existing folder is no error.
PLATFORM_API std::error_code MakeFolder(const std::string& path, unsigned mode = 0755);
// Makes the folder like MakeFolder with mode 0700 and opens it (O_PATH). One that another user owns or may look into is
// refused: std::errc::permission_denied.
PLATFORM_API Descriptor OpenPrivateFolder(const std::string& path, std::error_code& error);
PLATFORM_API std::error_code RemoveTree(const std::string& path);

// Modification date in nanoseconds since the epoch, as a number for SetFileModificationDate; 0 means failure. Dates at or
// before the epoch are large numbers, so that every file has a date.
PLATFORM_API uint64_t GetFileModificationDate(const std::string& path);
PLATFORM_API bool SetFileModificationDate(const std::string& path, uint64_t date);

// One line for a person: "No such file", "Permission denied" and so on.
PLATFORM_API std::string DescribeError(const std::error_code& error);

}  // namespace platform
