// All fonts that the agent knows now, by ID, name, family and file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "agent/fonts/FontFile.h"
#include "agent/fonts/RowIndex.h"
#include "agent/fonts/Rows.h"
#include "agent/fonts/Workgroup.h"

namespace agent {

struct Font {
  uint32_t id = 0;
  uint32_t familyID = 0;
  uint32_t workgroupID = kFontLibraryID;
  SharedText path;
  uint32_t fileSize = 0;  // in bytes; font files have at most 1 GiB
  uint32_t added = 0;     // to the library, in seconds since 1970; 0 if unknown
  FontFace face;
};

// The fonts of a file have one path. Pointers are valid until their file is replaced or removed. Takes some 150 bytes a
// font besides its names. Use on one thread only.
class FontTable {
 public:
  // Replaces the fonts of a file; an empty list removes the file. Returns the fonts that are gone.
  std::vector<Font> ReplaceFile(const std::string& path, const std::vector<Font>& fonts);
  void SetWorkgroupOfFile(const std::string& path, uint32_t workgroupID);
  // Sets the files that the operating system has active by itself, in whatever workgroup.
  void SetSystemActiveFiles(const std::vector<std::string>& paths);
  bool IsSystemActive(const Font& font) const { return systemActive_.contains(font.path.Number()); }

  const Font* Find(uint32_t id) const;  // null if unknown
  // Sorted by workgroup (IsSearchedBefore), then ID.
  std::vector<const Font*> WithPostScriptName(std::string_view name) const;  // exact match
  std::vector<const Font*> WithFamilyName(std::string_view name) const;      // ignoring case
  std::vector<const Font*> WithFamilyID(uint32_t familyID) const;
  std::vector<const Font*> OfFile(std::string_view path) const;  // in the order of the faces
  // Calls visit(const Font&) for each font, in no order.
  template <class Visit>
  void ForEach(const Visit& visit) const {
    for (uint32_t row = 0; row < rows_.End(); ++row) {
      if (rows_[row].font.id != 0) visit(rows_[row].font);
    }
  }
  size_t Count() const { return rows_.Count(); }
  // Another number after each change of the fonts and their workgroups.
  uint64_t Revision() const { return revision_; }

 private:
  struct Row {
    Font font;
    SharedText family;  // in lower case
  };
  using KeyOf = uint32_t (*)(const Row& row);
  struct Column {
    KeyOf keyOf;
    RowIndex index;
  };

  void Add(const Font& font);
  void Remove(uint32_t row);
  std::vector<uint32_t> RowsWith(const Column& column, uint32_t key) const;
  std::vector<const Font*> FontsWith(const Column& column, uint32_t key) const;
  SharedText Lowercase(SharedText family);

  Rows<Row> rows_;                             // unused ones have no ID
  std::unordered_set<uint32_t> systemActive_;  // numbers of paths
  Column byID_{[](const Row& row) { return row.font.id; }, {}};
  Column byPostScriptName_{[](const Row& row) { return row.font.face.postScriptName.Number(); }, {}};
  Column byFamily_{[](const Row& row) { return row.family.Number(); }, {}};
  Column byFamilyID_{[](const Row& row) { return row.font.familyID; }, {}};
  Column byPath_{[](const Row& row) { return row.font.path.Number(); }, {}};
  uint64_t revision_ = 0;
  SharedText lastFamily_, lastLowercase_;  // the faces of a family come together
};

}  // namespace agent
