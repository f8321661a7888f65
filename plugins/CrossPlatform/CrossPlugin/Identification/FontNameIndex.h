// An index of the PostScript names of a font array, for loops that look up many names. Gives the same results as
// DoesArrayContainFontWithPostScriptName, in constant time. Does not own the array.
//
// Invariant: each named entry of the array is indexed by its name, and by its loose and strict forms if they differ.
// Code that adds or replaces entries must call Added or Replaced.
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/Value.h"

namespace GlyphsureSupport {

class FontNameIndex {
 public:
  explicit FontNameIndex(const platform::Array& fontArray);

  // Returns the index of the entry that the three passes find.
  std::optional<size_t> Find(std::string_view name) const;
  // Call after appending an entry at this index, or after replacing it. A null name is not indexed.
  void Added(size_t index, const platform::String& name);
  void Replaced(size_t index, const platform::String& former, const platform::String& name);

 private:
  // The positions of the entries of one key; nearly always one.
  struct Positions {
    size_t lowest;
    std::set<size_t> others;
  };
  struct Hash {
    using is_transparent = void;
    size_t operator()(std::string_view key) const { return std::hash<std::string_view>()(key); }
  };
  using Entries = std::unordered_map<std::string, Positions, Hash, std::equal_to<>>;

  static size_t First(const Entries& entries, std::string_view key);
  static void Insert(Entries& entries, const std::string& key, size_t index);
  static void Erase(Entries& entries, const std::string& key, size_t index);
  // Calls `step` for each key of the name.
  void ForEachKey(std::string_view name, size_t index, void (*step)(Entries&, const std::string& key, size_t index));

  Entries exact_;
  // By the form that is the same in both comparisons, or by each of the two.
  Entries normal_, loose_, strict_;
};

}  // namespace GlyphsureSupport
