#include "agent/fonts/Checksums.h"

#include <zlib.h>

namespace agent {

uint32_t Crc32(std::string_view bytes, uint32_t start) {
  // zlib answers a null pointer with its own first value.
  if (bytes.empty()) return start;
  return static_cast<uint32_t>(crc32_z(start, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

uint32_t Fnv1a(std::string_view bytes, uint32_t start) {
  uint32_t value = start;
  for (const char c : bytes) value = (value ^ static_cast<uint8_t>(c)) * 16777619u;
  return value;
}

}  // namespace agent
