// Big-endian numbers in the bytes of fonts, images and network protocols. Functions without state, for any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

// Returns the unsigned number in the `width` bytes from `at` on. They must be within `bytes`, and no more than 8.
inline uint64_t ReadBigEndian(std::string_view bytes, size_t at, size_t width) {
  uint64_t value = 0;
  for (size_t i = 0; i < width; ++i) value = value << 8 | static_cast<uint8_t>(bytes[at + i]);
  return value;
}

// Appends the low `width` bytes of the number.
inline void AppendBigEndian(std::string& out, uint64_t value, int width) {
  for (int shift = (width - 1) * 8; shift >= 0; shift -= 8) out.push_back(static_cast<char>(value >> shift & 0xFF));
}

}  // namespace platform
