// The table directory of TrueType and OpenType files and their collections, checked against the size of the file.
// Follows the chapter "The OpenType font file" of OpenType 1.9.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

class SfntTables {
 public:
  static bool IsSfnt(std::string_view bytes);
  static bool IsCollection(std::string_view bytes);
  // Returns the offsets of the faces: one 0 for a single font. Nothing, with a line in `problem`, if the header is
  // truncated.
  static std::optional<std::vector<uint32_t>> FaceOffsets(std::string_view bytes, std::string& problem);
  // Parses the directory at the offset. Every table is completely within the bytes. Returns nothing, with a line in
  // `problem`, otherwise. The bytes must outlive the result.
  static std::optional<SfntTables> Parse(std::string_view bytes, uint32_t offset, std::string& problem);

  size_t DirectorySize() const { return directorySize_; }  // in bytes
  bool Has(std::string_view tag) const { return tables_.contains(tag); }
  std::string_view Table(std::string_view tag) const;  // empty if absent

 private:
  std::map<std::string, std::string_view, std::less<>> tables_;
  size_t directorySize_ = 0;
};

}  // namespace agent
