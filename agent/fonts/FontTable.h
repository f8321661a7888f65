// All fonts that the agent knows now, by ID, name, family and file.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "agent/fonts/FontFile.h"
#include "agent/fonts/Workgroup.h"

namespace agent {

struct Font {
  uint32_t id = 0;
  uint32_t familyID = 0;
  uint32_t workgroupID = kFontLibraryID;
  std::string path;
  uint64_t fileSize = 0;
  int64_t added = 0;  // to the library, in seconds since 1970; 0 if unknown
  FontFace face;
};

// The fonts of a file have one path. Pointers are valid until their file is replaced or removed.
class FontTable {
 public:
  // Replaces the fonts of a file; an empty list removes the file. Returns the fonts that are gone.
  std::vector<Font> ReplaceFile(const std::string& path, const std::vector<Font>& fonts);
  // Sets the files that the operating system has active by itself, in whatever workgroup.
  void SetSystemActiveFiles(std::set<std::string> paths) { systemActive_ = std::move(paths); }
  bool IsSystemActive(const Font& font) const { return systemActive_.contains(font.path); }

  const Font* Find(uint32_t id) const;  // null if unknown
  // Sorted by workgroup (IsSearchedBefore), then ID.
  std::vector<const Font*> WithPostScriptName(std::string_view name) const;  // exact match
  std::vector<const Font*> WithFamilyName(std::string_view name) const;      // ignoring case
  std::vector<const Font*> WithFamilyID(uint32_t familyID) const;
  std::vector<const Font*> OfFile(const std::string& path) const;  // in the order of the faces
  // Calls visit(const Font&) for each font, in no order.
  template <class Visit>
  void ForEach(const Visit& visit) const {
    for (const auto& [id, font] : fonts_) visit(font);
  }
  size_t Count() const { return fonts_.size(); }

 private:
  using Index = std::unordered_multimap<std::string, uint32_t>;
  std::vector<const Font*> Look(const Index& index, const std::string& key) const;
  void Forget(const Font& font);
  std::unordered_map<uint32_t, Font> fonts_;
  std::map<std::string, std::vector<uint32_t>> files_;
  std::set<std::string> systemActive_;
  Index byPostScriptName_;
  Index byFamily_;  // in lower case
  std::unordered_multimap<uint32_t, uint32_t> byFamilyID_;
};

}  // namespace agent
