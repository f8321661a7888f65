// PatchFile of platform/Files.h.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cinttypes>
#include <cstdio>

#include "platform/Checksum.h"
#include "platform/FileBytes.h"
#include "platform/Files.h"
#include "platform/Trace.h"

namespace platform {

namespace {

constexpr const char* kJournal = "patch";

// A journal is one line, "PATCH 1 OFFSET LENGTH CHECKSUM", then the old and the new bytes, LENGTH bytes each.
struct Patch {
  uint64_t offset = 0;
  std::string_view old, bytes;
};

uint64_t ChecksumOf(const Patch& patch) {
  return AddToChecksum(AddToChecksum(kEmptyChecksum ^ patch.offset, patch.old), patch.bytes);
}

std::string JournalOf(const Patch& patch) {
  char line[100];
  std::snprintf(line, sizeof line, "PATCH 1 %" PRIu64 " %zu %016" PRIx64 "\n", patch.offset, patch.old.size(),
                ChecksumOf(patch));
  return std::string(line).append(patch.old).append(patch.bytes);
}

// Returns false for an incomplete journal, whose writer was killed; then the file itself is unchanged.
bool ReadJournal(std::string_view journal, Patch& patch) {
  const size_t end = journal.find('\n');
  if (end == std::string_view::npos) return false;
  size_t length = 0;
  uint64_t checksum = 0;
  const std::string line(journal.substr(0, end));
  if (std::sscanf(line.c_str(), "PATCH 1 %" SCNu64 " %zu %" SCNx64, &patch.offset, &length, &checksum) != 3) {
    return false;
  }
  journal.remove_prefix(end + 1);
  if (journal.size() % 2 != 0 || journal.size() / 2 != length) return false;
  patch.old = journal.substr(0, length);
  patch.bytes = journal.substr(length);
  return ChecksumOf(patch) == checksum;
}

// True if each byte is either the old or the new one. Otherwise another program has written the file since.
bool IsPartlyDone(std::string_view there, const Patch& patch) {
  for (size_t i = 0; i < there.size(); ++i) {
    if (there[i] != patch.old[i] && there[i] != patch.bytes[i]) return false;
  }
  return true;
}

std::error_code WriteJournal(const std::string& path, const Patch& patch) {
  const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!file) return LastError();
  std::error_code error = WriteAll(file.Get(), JournalOf(patch));
  if (!error && fsync(file.Get()) != 0) error = LastError();
  if (error) {
    unlink(path.c_str());
  } else {
    SyncFolder(FolderOf(path));
  }
  return error;
}

std::error_code WriteDurably(int file, uint64_t offset, std::string_view bytes) {
  const std::error_code error = WriteAllAt(file, offset, bytes);
  return !error && fdatasync(file) != 0 ? LastError() : error;
}

// Removes equal bytes at both ends.
Patch Trimmed(Patch patch) {
  const auto difference = std::mismatch(patch.old.begin(), patch.old.end(), patch.bytes.begin());
  const auto same = static_cast<size_t>(difference.first - patch.old.begin());
  patch.offset += same;
  patch.old.remove_prefix(same);
  patch.bytes.remove_prefix(same);
  while (!patch.old.empty() && patch.old.back() == patch.bytes.back()) {
    patch.old.remove_suffix(1);
    patch.bytes.remove_suffix(1);
  }
  return patch;
}

}  // namespace

std::error_code PatchFile(const std::string& path, uint64_t offset, std::string_view old, std::string_view bytes) {
  if (old.size() != bytes.size()) return std::make_error_code(std::errc::invalid_argument);
  if (const std::error_code error = FinishInterruptedWrite(path)) return error;
  const std::string target = BehindLinks(path);
  const Descriptor file(open(target.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  struct stat info;
  if (!file || fstat(file.Get(), &info) != 0) return LastError();
  std::string there(old.size(), '\0');
  if (const std::error_code error = ReadAllAt(file.Get(), offset, there)) return error;
  if (there != old) return std::make_error_code(std::errc::operation_canceled);
  const Patch patch = Trimmed({offset, old, bytes});
  if (patch.old.empty()) return {};
  const std::string journal = HiddenBeside(target, kJournal, info);
  const FileSizeSignalHeld held;
  if (const std::error_code error = WriteJournal(journal, patch)) return error;
  const std::error_code error = WriteDurably(file.Get(), patch.offset, patch.bytes);
  if (!error || !WriteDurably(file.Get(), patch.offset, patch.old)) unlink(journal.c_str());
  return error;
}

std::error_code FinishPatch(const std::string& path, const struct stat& info) {
  const std::string journal = HiddenBeside(path, kJournal, info);
  if (!IsOwnFile(journal, info)) return {};
  std::string content;
  if (const std::error_code error = ReadFile(journal, content)) return error;
  Patch patch;
  if (ReadJournal(content, patch)) {
    const Descriptor file(open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!file) return LastError();
    std::string there(patch.old.size(), '\0');
    const bool isRead = !ReadAllAt(file.Get(), patch.offset, there);
    if (isRead && there != patch.bytes && IsPartlyDone(there, patch)) {
      if (const std::error_code error = WriteDurably(file.Get(), patch.offset, patch.bytes)) return error;
      ReportProblem(path + ": a save that was interrupted is finished");
    }
  }
  unlink(journal.c_str());
  return {};
}

}  // namespace platform
