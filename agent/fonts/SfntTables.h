// The table directory of TrueType and OpenType files and their collections, checked against the size of the file.
// Follows the chapter "The OpenType font file" of OpenType 1.9. `bytes` is always the whole file.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

// The tables of one face: views of the file's bytes, which must outlive this object.
class SfntTables {
 public:
  // True if the file starts like a font or a collection.
  static bool IsSfnt(std::string_view bytes);
  static bool IsCollection(std::string_view bytes);
  // Returns the offset of each face's directory; for a single font one 0. If a collection's list of faces does not fit
  // the file, returns nothing and sets `problem` to a line for people.
  static std::optional<std::vector<uint32_t>> FaceOffsets(std::string_view bytes, std::string& problem);
  // Parses the directory at the offset. If it or one of its tables is not completely within the file, returns nothing
  // and sets `problem` to a line for people.
  static std::optional<SfntTables> Parse(std::string_view bytes, uint32_t offset, std::string& problem);

  size_t DirectorySize() const { return directorySize_; }  // in bytes
  // `tag` has four characters, for example "cvt ".
  bool Has(std::string_view tag) const { return tables_.contains(tag); }
  std::string_view Table(std::string_view tag) const;  // empty if absent

 private:
  std::map<std::string, std::string_view, std::less<>> tables_;  // by tag
  size_t directorySize_ = 0;
};

}  // namespace agent
