// The 64-bit FNV-1a checksum. It finds accidents, not manipulation.
#pragma once

#include <cstdint>
#include <string_view>

namespace platform {

inline constexpr uint64_t kEmptyChecksum = 14695981039346656037u;

// Returns the checksum of these bytes after those of `checksum`.
constexpr uint64_t AddToChecksum(uint64_t checksum, std::string_view bytes) {
  for (const char c : bytes) checksum = (checksum ^ static_cast<unsigned char>(c)) * 1099511628211u;
  return checksum;
}

}  // namespace platform
