// The place of a file, made from a path. A value; any thread.
#pragma once

#include <cstddef>
#include <string>

#include "platform/Export.h"

namespace platform {

// How a path is written. This system has POSIX paths only: the others give a null URL.
enum class PathStyle : int { kPOSIX = 0, kHFS = 1, kWindows = 2 };

class PLATFORM_API FileURL {
 public:
  // A null URL, which names no file.
  FileURL() = default;
  // From a path as UTF-8. Null for another style, malformed UTF-8, an empty path, and a path that holds a NUL.
  static FileURL FromPath(const std::string& path, PathStyle style);
  // From the bytes that the file system stores, which need not be UTF-8. Null for an empty path and one that holds a NUL.
  static FileURL FromFileSystemRepresentation(const std::string& bytes);

  explicit operator bool() const { return !bytes_.empty(); }
  // Writes the path and a NUL. False, with the buffer untouched, for a null URL and for a path that does not fit.
  bool GetFileSystemRepresentation(char* buffer, size_t size) const;

 private:
  std::string bytes_;
};

}  // namespace platform
