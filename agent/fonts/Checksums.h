// Checksums that identify a font on any machine.
#pragma once

#include <cstdint>
#include <string_view>

namespace agent {

// CRC-32 of ISO 3309 (polynomial 0xEDB88320). `start` is the result for the preceding bytes.
uint32_t Crc32(std::string_view bytes, uint32_t start = 0);

// 32-bit FNV-1a; `start` as above.
inline constexpr uint32_t kFnvStart = 2166136261u;
uint32_t Fnv1a(std::string_view bytes, uint32_t start = kFnvStart);

}  // namespace agent
