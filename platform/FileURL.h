// The location of a file, made from a path. A value type; thread-safe.
#pragma once

#include <cstddef>
#include <string>

#include "platform/Export.h"

namespace platform {

// The style of a path. This system has POSIX paths only; other styles give a null URL.
enum class PathStyle : int { kPOSIX = 0, kHFS = 1, kWindows = 2 };

class PLATFORM_API FileURL {
 public:
  // A null URL names no file.
  FileURL() = default;
  // From a UTF-8 path. Null for another style, malformed UTF-8, an empty path, and a path with a NUL.
  static FileURL FromPath(const std::string& path, PathStyle style);
  // From the file system's bytes, which need not be UTF-8. Null for an empty path and a path with a NUL.
  static FileURL FromFileSystemRepresentation(const std::string& bytes);

  explicit operator bool() const { return !bytes_.empty(); }
  // Writes the path and a NUL. Returns false, with the buffer unchanged, for a null URL or a path that does not fit.
  bool GetFileSystemRepresentation(char* buffer, size_t size) const;

 private:
  std::string bytes_;
};

}  // namespace platform
