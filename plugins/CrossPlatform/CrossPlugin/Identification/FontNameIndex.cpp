#include "Identification/FontNameIndex.h"

#include <algorithm>
#include <limits>

#include "Identification/FontKeys.h"
#include "Identification/FontNames.h"

namespace GlyphsureSupport {

using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

constexpr size_t kNowhere = std::numeric_limits<size_t>::max();

std::string Loose(std::string_view name) { return GFontToolUtils_StripCharsAndNormalizeString(name, false); }
std::string Strict(std::string_view name) { return GFontToolUtils_StripCharsAndNormalizeString(name, true); }

}  // namespace

FontNameIndex::FontNameIndex(const Array& fontArray) {
  for (size_t i = 0; i < fontArray.Count(); ++i) {
    Added(i, Dictionary(fontArray.At(i)).GetString(kGS_PostScriptNameKey));
  }
}

size_t FontNameIndex::First(const Entries& entries, std::string_view key) {
  const auto found = entries.find(key);
  return found == entries.end() ? kNowhere : found->second.lowest;
}

void FontNameIndex::Insert(Entries& entries, const std::string& key, size_t index) {
  const auto [entry, isNew] = entries.try_emplace(key, Positions{index, {}});
  if (isNew) return;
  Positions& positions = entry->second;
  positions.others.insert(std::max(positions.lowest, index));
  positions.lowest = std::min(positions.lowest, index);
}

void FontNameIndex::Erase(Entries& entries, const std::string& key, size_t index) {
  const auto entry = entries.find(key);
  if (entry == entries.end()) return;
  Positions& positions = entry->second;
  if (positions.lowest != index) {
    positions.others.erase(index);
  } else if (positions.others.empty()) {
    entries.erase(entry);
  } else {
    positions.lowest = *positions.others.begin();
    positions.others.erase(positions.others.begin());
  }
}

// The loose and strict comparisons leave their own results unchanged, so an entry of that name in exact_ matches a
// loose or strict form, too.
std::optional<size_t> FontNameIndex::Find(std::string_view name) const {
  size_t found = First(exact_, name);
  if (found == kNowhere) {
    const std::string key = Loose(name);
    found = std::min({First(exact_, key), First(normal_, key), First(loose_, key)});
  }
  if (found == kNowhere) {
    const std::string key = Strict(name);
    found = std::min({First(exact_, key), First(normal_, key), First(strict_, key)});
  }
  return found == kNowhere ? std::nullopt : std::optional(found);
}

void FontNameIndex::ForEachKey(std::string_view name, size_t index,
                               void (*step)(Entries&, const std::string& key, size_t index)) {
  const std::string exact(name), loose = Loose(name), strict = Strict(name);
  step(exact_, exact, index);
  if (loose != strict) {
    step(loose_, loose, index);
    step(strict_, strict, index);
  } else if (loose != exact) {
    step(normal_, loose, index);
  }
}

void FontNameIndex::Added(size_t index, const String& name) {
  if (name) ForEachKey(name.View(), index, Insert);
}

void FontNameIndex::Replaced(size_t index, const String& former, const String& name) {
  if (former.View() == name.View() && static_cast<bool>(former) == static_cast<bool>(name)) return;
  if (former) ForEachKey(former.View(), index, Erase);
  Added(index, name);
}

}  // namespace GlyphsureSupport
