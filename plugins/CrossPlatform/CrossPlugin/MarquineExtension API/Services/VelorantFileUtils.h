// The modification date of a file in nanoseconds since the epoch; 0 means failure.
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
