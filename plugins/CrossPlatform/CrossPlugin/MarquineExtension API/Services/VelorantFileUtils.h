// The modification date of a file as an unsigned number (nanoseconds since the epoch), in which 0 means failure.
#pragma once

#include <string>

#include "platform/Files.h"

namespace VelorantFileUtils {

inline unsigned long long GetFileModificationDate(const std::string& path) {
  return platform::GetFileModificationDate(path);
}
inline bool SetFileModificationDate(const std::string& path, unsigned long long date) {
  return platform::SetFileModificationDate(path, date);
}

}  // namespace VelorantFileUtils
