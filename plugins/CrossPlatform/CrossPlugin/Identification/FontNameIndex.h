// An index of the PostScript names of a font array, for loops that look up many names in it. Gives exactly the answers of
// DoesArrayContainFontWithPostScriptName, at a cost that does not grow with the number of names.
//
// Always true: each named entry of the array stands under its name, and under its loose and strict forms where these are
// other texts. Whoever adds or replaces entries of the array while the index lives tells it so. It does not hold the array.
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

  // The index of the entry that the three passes find.
  std::optional<size_t> Find(std::string_view name) const;
  // An entry was appended at this index, or that at the index was replaced. A null name is not indexed.
  void Added(size_t index, const platform::String& name);
  void Replaced(size_t index, const platform::String& former, const platform::String& name);

 private:
  // Where the entries of one key stand; nearly always there is one.
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
  // Takes the step under each key of the name.
  void ForEachKey(std::string_view name, size_t index, void (*step)(Entries&, const std::string& key, size_t index));

  Entries exact_;
  // By the form that a name has in both comparisons, or by each of two.
  Entries normal_, loose_, strict_;
};

}  // namespace GlyphsureSupport
