// An index of the PostScript names of a font array, for loops that look up many names in it. Gives exactly the answers of
// DoesArrayContainFontWithPostScriptName, at a cost that grows with the logarithm of the number of distinct names.
//
// Always true: it holds each named entry of the array under its name, its loose and its strict form. Whoever adds or
// replaces entries of the array while the index lives tells it so. It does not hold the array.
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Value.h"

namespace GlyphsureSupport {

class FontNameIndex {
 public:
  explicit FontNameIndex(const platform::Array& fontArray);

  // The index of the entry that the three passes find.
  std::optional<size_t> Find(std::string_view name) const;
  // An entry was appended at this index, or that at the index was replaced. A null name is not indexed.
  void Added(size_t index, const platform::String& name);
  void Replaced(size_t index, const platform::String& former, const platform::String& name);

 private:
  // Entries that share a key stand together, the lowest index first.
  using Entry = std::pair<std::string, size_t>;
  struct Less {
    using is_transparent = void;
    bool operator()(const Entry& a, const Entry& b) const { return a < b; }
    bool operator()(const Entry& a, std::string_view key) const { return a.first < key; }
    bool operator()(std::string_view key, const Entry& b) const { return key < b.first; }
  };
  using Entries = std::set<Entry, Less>;

  static std::optional<size_t> First(const Entries& entries, std::string_view key);
  void Removed(size_t index, const platform::String& name);

  Entries exact_, loose_, strict_;
};

}  // namespace GlyphsureSupport
