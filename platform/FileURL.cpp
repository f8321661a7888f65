#include "platform/FileURL.h"

#include <algorithm>

#include "platform/TextEncoding.h"

namespace platform {

FileURL FileURL::FromPath(const std::string& path, PathStyle style) {
  if (style != PathStyle::kPOSIX || !IsValidUTF8(path)) return {};
  return FromFileSystemRepresentation(path);
}

FileURL FileURL::FromFileSystemRepresentation(const std::string& bytes) {
  FileURL url;
  if (bytes.find('\0') == std::string::npos) url.bytes_ = bytes;
  return url;
}

bool FileURL::GetFileSystemRepresentation(char* buffer, size_t size) const {
  if (bytes_.empty() || bytes_.size() >= size) return false;
  std::copy_n(bytes_.c_str(), bytes_.size() + 1, buffer);
  return true;
}

}  // namespace platform
