#include "agent/Checksums.h"

#include <array>

namespace agent {

namespace {

constexpr std::array<uint32_t, 256> MakeTable() {
  std::array<uint32_t, 256> table{};
  for (uint32_t i = 0; i < 256; ++i) {
    uint32_t value = i;
    for (int bit = 0; bit < 8; ++bit) value = (value & 1) ? 0xEDB88320u ^ (value >> 1) : value >> 1;
    table[i] = value;
  }
  return table;
}

constexpr std::array<uint32_t, 256> kTable = MakeTable();

}  // namespace

uint32_t Crc32(std::string_view bytes, uint32_t start) {
  uint32_t value = ~start;
  for (const char c : bytes) value = kTable[(value ^ static_cast<uint8_t>(c)) & 0xFF] ^ (value >> 8);
  return ~value;
}

uint32_t Fnv1a(std::string_view bytes, uint32_t start) {
  uint32_t value = start;
  for (const char c : bytes) value = (value ^ static_cast<uint8_t>(c)) * 16777619u;
  return value;
}

}  // namespace agent
