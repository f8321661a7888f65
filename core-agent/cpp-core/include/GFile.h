// A buffered file of the system. Every operation returns a TModuleErrorCode, 0 for success; a failure is logged once
// under "FileSystem", and what it would have given out stays untouched. One thread at a time. The destructor closes.
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

  // Mode bits of EMode; without eRead and eWrite nothing can be opened, and eBinary changes nothing here. Closes an
  // open file first. GFileSystem::kFileNotFound for a file to be read that is not there, else kOpenFailed. A folder can be
  // opened for reading, as the system has it; reading from it fails.
  virtual TModuleErrorCode Open(const GFileSystemSpec& spec, int mode);
  virtual TModuleErrorCode Close();
  virtual bool IsOpen() const { return mFile != nullptr; }
  virtual GFileSystemSpec GetFileSpec() const { return mSpec; }
  virtual TModuleErrorCode GetFileSize(unsigned long long& size);
  virtual TModuleErrorCode SetFileSize(unsigned long long size);
  // Offsets backwards are given as two's complement.
  virtual TModuleErrorCode SetFilePosition(EPosition from, unsigned long long offset);
  virtual TModuleErrorCode GetFilePosition(unsigned long long& position);
  // From the present position to the end. CoreErrorCodes::kOutOfMemory if there is more than memory takes.
  virtual TModuleErrorCode Read(std::vector<char>& bytes);
  virtual TModuleErrorCode Read(std::vector<unsigned char>& bytes);
  virtual TModuleErrorCode Read(std::string& text);
  // Exactly so many bytes; fewer in the file is a failure.
  virtual TModuleErrorCode Read(unsigned long long count, std::vector<char>& bytes);
  virtual TModuleErrorCode Read(unsigned short& value);  // in the machine's byte order, as the other numbers
  virtual TModuleErrorCode Read(unsigned int& value);
  virtual TModuleErrorCode Write(const std::vector<char>& bytes);
  virtual TModuleErrorCode Write(const char* bytes, unsigned long long count);
  virtual TModuleErrorCode Write(const std::string& text);
  virtual TModuleErrorCode Write(unsigned short value);
  virtual TModuleErrorCode Write(unsigned int value);
  virtual TModuleErrorCode Flush();
  // Files here have no second fork: CoreErrorCodes::kNotSupported.
  virtual TModuleErrorCode OpenResourceFork(const GFileSystemSpec& spec, int mode);

  // The mode for fopen, without the "b" that OSGetModeString adds; empty without the bits 1 and 2.
  static std::string GetModeString(int mode);
  static std::string OSGetModeString(int mode);

 private:
  enum class EDirection { kNone, kReading, kWriting };

  TModuleErrorCode TurnTo(EDirection direction);
  TModuleErrorCode RemainingSize(unsigned long long& size);
  TModuleErrorCode ReadBytes(void* bytes, unsigned long long count);

  std::FILE* mFile = nullptr;
  GFileSystemSpec mSpec;
  EDirection mDirection = EDirection::kNone;  // of the last transfer
};
