// Web font files (WOFF, WOFF2), made from plain ones.
#pragma once

#include <woff2/encode.h>
#include <zlib.h>

#include <cstdint>
#include <string>

namespace test_support {

inline std::string Woff2Of(const std::string& font) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(font.data());
  std::string packed(woff2::MaxWOFF2CompressedSize(bytes, font.size()), '\0');
  size_t size = packed.size();
  woff2::WOFF2Params fast;
  fast.brotli_quality = 1;
  if (!woff2::ConvertTTFToWOFF2(bytes, font.size(), reinterpret_cast<uint8_t*>(packed.data()), &size, fast)) return "";
  packed.resize(size);
  return packed;
}

inline std::string WoffOf(const std::string& font) {
  const auto number = [](uint32_t value, size_t size) {
    std::string bytes;
    for (size_t i = size; i-- > 0;) bytes += static_cast<char>(value >> (8 * i));
    return bytes;
  };
  const auto read = [&font](size_t at) {
    uint32_t value = 0;
    for (size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<uint8_t>(font[at + i]);
    return value;
  };
  constexpr size_t kHeader = 44, kEntry = 20;
  const size_t count = read(4) >> 16;
  std::string entries, tables;
  for (size_t i = 0; i < count; ++i) {
    const size_t entry = 12 + 16 * i;
    const uint32_t length = read(entry + 12);
    const std::string table = font.substr(read(entry + 8), length);
    std::string packed(compressBound(length), '\0');
    uLongf size = packed.size();
    compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(table.data()), length);
    packed.resize(size);
    if (packed.size() >= length) packed = table;  // it is stored as it is
    const auto at = static_cast<uint32_t>(kHeader + kEntry * count + tables.size());
    entries += font.substr(entry, 4) + number(at, 4) + number(static_cast<uint32_t>(packed.size()), 4) +
               number(length, 4) + font.substr(entry + 4, 4);
    tables += packed;
    tables.resize((tables.size() + 3) / 4 * 4);
  }
  const auto length = static_cast<uint32_t>(kHeader + entries.size() + tables.size());
  return "wOFF" + font.substr(0, 4) + number(length, 4) + number(static_cast<uint32_t>(count), 2) + number(0, 2) +
         number(static_cast<uint32_t>(font.size()), 4) + number(1, 4) + std::string(20, '\0') + entries + tables;
}

}  // namespace test_support
