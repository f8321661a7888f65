// Queries about paths.
#pragma once

#include <string>

#include "ErrorCodes.h"
#include "GFileSystemSpec.h"

class GFileSystem {
 public:
  static constexpr TModuleErrorCode kFileNotFound = 0x01001005;

  static const std::string& OSGetPathSeparator();
  static bool OSDoesFileExist(const GFileSystemSpec& spec);
  // Returns 0x5000000 if the home folder is unknown.
  static TModuleErrorCode OSGetUsersRootDirectory(GFileSystemSpec& spec);
  // Replaces a leading "~" by the home folder.
  static TModuleErrorCode OSExpandPath(std::string& path);
  static bool OSIsValidFullPath(const std::string& path);
  static bool OSIsPartialPath(const std::string& path);
  static std::string OSGetCWD();  // empty if the current folder was deleted
};
