// A buffered file. Every operation returns a TModuleErrorCode, 0 for success. A failure is logged once under
// "FileSystem" and leaves out parameters unchanged. Use by one thread at a time. The destructor closes the file.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "GFileSystemSpec.h"

class GFile {
 public:
  enum EMode : int { eRead = 1, eWrite = 2, eAppend = 4, eTruncate = 8, eBinary = 32 };
  enum EPosition : int { eFromStart = SEEK_SET, eFromCurrent = SEEK_CUR, eFromEnd = SEEK_END };

  static constexpr TModuleErrorCode kFileNotOpen = 0x01001004;
  static constexpr TModuleErrorCode kOpenFailed = 0x02001004;

  GFile() = default;
  virtual ~GFile();
  GFile(const GFile&) = delete;
  GFile& operator=(const GFile&) = delete;

  // `mode` is a combination of EMode bits. At least eRead or eWrite is required; eBinary has no effect here. Closes an
  // open file first. Returns GFileSystem::kFileNotFound if a file to read does not exist, otherwise kOpenFailed on
  // failure. A folder can be opened for reading, but reading from it fails.
  virtual TModuleErrorCode Open(const GFileSystemSpec& spec, int mode);
  virtual TModuleErrorCode Close();
  virtual bool IsOpen() const { return mFile != nullptr; }
  virtual GFileSystemSpec GetFileSpec() const { return mSpec; }
  virtual TModuleErrorCode GetFileSize(unsigned long long& size);
  virtual TModuleErrorCode SetFileSize(unsigned long long size);
  // Give a backward offset as two's complement.
  virtual TModuleErrorCode SetFilePosition(EPosition from, unsigned long long offset);
  virtual TModuleErrorCode GetFilePosition(unsigned long long& position);
  // Reads from the current position to the end. CoreErrorCodes::kOutOfMemory if it does not fit in memory.
  virtual TModuleErrorCode Read(std::vector<char>& bytes);
  virtual TModuleErrorCode Read(std::vector<unsigned char>& bytes);
  virtual TModuleErrorCode Read(std::string& text);
  // Reads exactly `count` bytes; fails if there are fewer.
  virtual TModuleErrorCode Read(unsigned long long count, std::vector<char>& bytes);
  virtual TModuleErrorCode Read(unsigned short& value);  // in machine byte order, like the other numbers
  virtual TModuleErrorCode Read(unsigned int& value);
  virtual TModuleErrorCode Write(const std::vector<char>& bytes);
  virtual TModuleErrorCode Write(const char* bytes, unsigned long long count);
  virtual TModuleErrorCode Write(const std::string& text);
  virtual TModuleErrorCode Write(unsigned short value);
  virtual TModuleErrorCode Write(unsigned int value);
  virtual TModuleErrorCode Flush();
  // Always CoreErrorCodes::kNotSupported: files here have no resource fork.
  virtual TModuleErrorCode OpenResourceFork(const GFileSystemSpec& spec, int mode);

  // Returns the mode for fopen without the "b" that OSGetModeString adds; empty without eRead and eWrite.
  static std::string GetModeString(int mode);
  static std::string OSGetModeString(int mode);

 private:
  enum class EDirection { kNone, kReading, kWriting };

  TModuleErrorCode TurnTo(EDirection direction);
  TModuleErrorCode RemainingSize(unsigned long long& size);
  TModuleErrorCode ReadBytes(void* bytes, unsigned long long count);

  std::FILE* mFile = nullptr;
  GFileSystemSpec mSpec;
  EDirection mDirection = EDirection::kNone;  // direction of the last transfer
};
