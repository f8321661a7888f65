#include "GFile.h"

#include <unistd.h>

#include <cerrno>
#include <new>
#include <stdexcept>

#include "FailedCheck.h"
#include "GFileSystem.h"

namespace {
constexpr TModuleErrorCode kSystemFailure = CoreErrorCodes::kError;

bool TakeMemory(std::vector<char>& bytes, unsigned long long count) {
  try {
    bytes.resize(count);
    return true;
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  }
  return false;
}

// A folder has a size, but no bytes to read.
bool HasNoByte(std::FILE* file) { return std::ungetc(std::getc(file), file) == EOF; }

}  // namespace

GFile::~GFile() {
  if (mFile) std::fclose(mFile);
}

std::string GFile::GetModeString(int mode) {
  const bool read = mode & eRead, write = mode & eWrite, truncate = mode & eTruncate;
  if (read && !write) return "r";
  if (!read && write) return truncate ? "w" : "a";
  if (read && write) return truncate ? "w+" : (mode & eAppend) ? "a+" : "r+";
  return "";
}

std::string GFile::OSGetModeString(int mode) { return GetModeString(mode) + "b"; }

TModuleErrorCode GFile::Open(const GFileSystemSpec& spec, int mode) {
  if (mFile) Close();  // logs a failure itself; the stream is closed in any case
  // fopen would stop at the NUL and open another file.
  RETURN_IF("FileSystem", spec.GetFullPath().find('\0') != std::string::npos, kOpenFailed);
  errno = 0;
  std::FILE* file = std::fopen(spec.GetFullPath().c_str(), OSGetModeString(mode).c_str());
  RETURN_IF("FileSystem", file == nullptr && (mode & eRead) && errno == ENOENT, GFileSystem::kFileNotFound);
  RETURN_IF("FileSystem", file == nullptr, kOpenFailed);
  mFile = file;
  mSpec = spec;
  mDirection = EDirection::kNone;
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFile::Close() {
  RETURN_IF("FileSystem", mFile == nullptr, kFileNotOpen);
  std::FILE* file = mFile;
  mFile = nullptr;  // fclose ends the stream even if it fails
  RETURN_IF("FileSystem", std::fclose(file) != 0, kSystemFailure);
  mSpec = GFileSystemSpec();
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFile::GetFileSize(unsigned long long& size) {
  RETURN_IF("FileSystem", mFile == nullptr, kFileNotOpen);
  const off_t position = ftello(mFile);
  RETURN_IF("FileSystem", position < 0, kSystemFailure);
  RETURN_IF("FileSystem", fseeko(mFile, 0, SEEK_END) != 0, kSystemFailure);
  const off_t end = ftello(mFile);
  RETURN_IF("FileSystem", fseeko(mFile, position, SEEK_SET) != 0 || end < 0, kSystemFailure);
  size = static_cast<unsigned long long>(end);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFile::SetFileSize(unsigned long long size) {
  RETURN_IF("FileSystem", mFile == nullptr, kFileNotOpen);
  RETURN_IF("FileSystem", std::fflush(mFile) != 0, kSystemFailure);
  RETURN_IF("FileSystem", ftruncate(fileno(mFile), static_cast<off_t>(size)) != 0, kSystemFailure);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFile::SetFilePosition(EPosition from, unsigned long long offset) {
  RETURN_IF("FileSystem", mFile == nullptr, kFileNotOpen);
  RETURN_IF("FileSystem", fseeko(mFile, static_cast<off_t>(offset), from) != 0, kSystemFailure);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFile::GetFilePosition(unsigned long long& position) {
  RETURN_IF("FileSystem", mFile == nullptr, kFileNotOpen);
  const off_t at = ftello(mFile);
  RETURN_IF("FileSystem", at < 0, kSystemFailure);
  position = static_cast<unsigned long long>(at);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFile::RemainingSize(unsigned long long& remaining) {
  unsigned long long size = 0, position = 0;
  PASS_ON_ERROR(GetFileSize(size));
  PASS_ON_ERROR(GetFilePosition(position));
  remaining = size > position ? size - position : 0;
  return CoreErrorCodes::kSuccess;
}

// The C library requires a change of position between a write and a read.
TModuleErrorCode GFile::TurnTo(EDirection direction) {
  RETURN_IF("FileSystem", mFile == nullptr, kFileNotOpen);
  if (mDirection != direction)
    RETURN_IF("FileSystem", fseeko(mFile, 0, SEEK_CUR) != 0 && errno != ESPIPE, kSystemFailure);
  mDirection = direction;
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFile::ReadBytes(void* bytes, unsigned long long count) {
  PASS_ON_ERROR(TurnTo(EDirection::kReading));
  RETURN_IF("FileSystem", std::fread(bytes, 1, count, mFile) != count, kSystemFailure);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFile::Read(unsigned long long count, std::vector<char>& bytes) {
  unsigned long long remaining = 0;
  PASS_ON_ERROR(RemainingSize(remaining));
  RETURN_IF("FileSystem", count > remaining, kSystemFailure);  // before memory is asked for
  std::vector<char> read;
  RETURN_IF("FileSystem", !TakeMemory(read, count), CoreErrorCodes::kOutOfMemory);
  PASS_ON_ERROR(ReadBytes(read.data(), count));
  bytes.swap(read);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFile::Read(std::vector<char>& bytes) {
  unsigned long long remaining = 0;
  PASS_ON_ERROR(RemainingSize(remaining));
  if (remaining == 0) {
    bytes.clear();
    return CoreErrorCodes::kSuccess;
  }
  PASS_ON_ERROR(TurnTo(EDirection::kReading));
  RETURN_IF("FileSystem", HasNoByte(mFile), kSystemFailure);
  return Read(remaining, bytes);
}

TModuleErrorCode GFile::Read(std::vector<unsigned char>& bytes) {
  std::vector<char> read;
  PASS_ON_ERROR(Read(read));
  bytes.assign(read.begin(), read.end());
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFile::Read(std::string& text) {
  std::vector<char> read;
  PASS_ON_ERROR(Read(read));
  text.assign(read.begin(), read.end());
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFile::Read(unsigned short& value) {
  unsigned short read = 0;
  PASS_ON_ERROR(ReadBytes(&read, sizeof read));
  value = read;
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFile::Read(unsigned int& value) {
  unsigned int read = 0;
  PASS_ON_ERROR(ReadBytes(&read, sizeof read));
  value = read;
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFile::Write(const char* bytes, unsigned long long count) {
  PASS_ON_ERROR(TurnTo(EDirection::kWriting));
  RETURN_IF("FileSystem", std::fwrite(bytes, 1, count, mFile) != count, kSystemFailure);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFile::Write(const std::vector<char>& bytes) { return Write(bytes.data(), bytes.size()); }
TModuleErrorCode GFile::Write(const std::string& text) { return Write(text.data(), text.size()); }
TModuleErrorCode GFile::Write(unsigned short value) {
  return Write(reinterpret_cast<const char*>(&value), sizeof value);
}
TModuleErrorCode GFile::Write(unsigned int value) { return Write(reinterpret_cast<const char*>(&value), sizeof value); }

TModuleErrorCode GFile::Flush() {
  RETURN_IF("FileSystem", mFile == nullptr, kFileNotOpen);
  RETURN_IF("FileSystem", std::fflush(mFile) != 0, kSystemFailure);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFile::OpenResourceFork(const GFileSystemSpec&, int) {
  ReportFailedCheck("FileSystem", CoreErrorCodes::kNotSupported, __FILE__, __LINE__, "OpenResourceFork(spec, mode)");
  return CoreErrorCodes::kNotSupported;
}
