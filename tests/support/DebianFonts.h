// The fonts of the tests: files of fonts-urw-base35, fonts-liberation2 and fonts-dejavu-core, and collections of them.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/Files.h"

namespace debian_fonts {

inline const std::string kOpenType = "/usr/share/fonts/opentype/urw-base35/";
inline const std::string kType1 = "/usr/share/fonts/type1/urw-base35/";
inline const std::string kBinaryType1 = "/usr/share/fonts/X11/Type1/";
inline const std::string kLiberation = "/usr/share/fonts/truetype/liberation2/";
inline const std::string kDejaVu = "/usr/share/fonts/truetype/dejavu/";

inline std::string Bytes(const std::string& path) {
  std::string bytes;
  if (const std::error_code error = platform::ReadFile(path, bytes)) {
    throw std::runtime_error(path + ": " + platform::DescribeError(error));
  }
  return bytes;
}

inline uint32_t Long(const std::string& bytes, size_t at) {
  uint32_t value = 0;
  for (size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<uint8_t>(bytes.at(at + i));
  return value;
}

inline void PutLong(std::string& bytes, size_t at, uint32_t value) {
  for (size_t i = 0; i < 4; ++i) bytes.at(at + i) = static_cast<char>(value >> (24 - 8 * i));
}

// A new version of LiberationSerif-Bold.
inline std::string UpdatedSerifBold() {
  std::string bytes = Bytes(kLiberation + "LiberationSerif-Bold.ttf");
  const std::string version(
      "V\0e\0r\0s\0i\0o\0n\0 \0"
      "2",
      17);
  bytes.at(bytes.find(version) + 16) = '3';
  return bytes;
}

// Returns the offset of a face's table directory in the collection.
inline uint32_t DirectoryOfFace(const std::string& collection, uint32_t face) {
  return Long(collection, 12 + 4 * face);
}

// Returns a collection of single TrueType or OpenType fonts, each with its own tables.
inline std::string MakeCollection(const std::vector<std::string>& fonts) {
  std::string bytes("ttcf\0\1\0\0", 8);
  bytes.resize(12 + 4 * fonts.size());
  PutLong(bytes, 8, static_cast<uint32_t>(fonts.size()));
  for (size_t i = 0; i < fonts.size(); ++i) {
    bytes.resize((bytes.size() + 3) / 4 * 4);
    const auto start = static_cast<uint32_t>(bytes.size());
    PutLong(bytes, 12 + 4 * i, start);
    bytes += fonts[i];
    const size_t tables = static_cast<uint8_t>(fonts[i][4]) * 256u + static_cast<uint8_t>(fonts[i][5]);
    // Offsets of tables count from the start of the file.
    for (size_t table = 0; table < tables; ++table) {
      const size_t at = start + 12 + 16 * table + 8;
      PutLong(bytes, at, Long(bytes, at) + start);
    }
  }
  return bytes;
}

}  // namespace debian_fonts
