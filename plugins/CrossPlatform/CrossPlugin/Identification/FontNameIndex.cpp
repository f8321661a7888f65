#include "Identification/FontNameIndex.h"

#include "Identification/FontKeys.h"
#include "Identification/FontNames.h"

namespace GlyphsureSupport {

using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

std::string Loose(std::string_view name) { return GFontToolUtils_StripCharsAndNormalizeString(name, false); }
std::string Strict(std::string_view name) { return GFontToolUtils_StripCharsAndNormalizeString(name, true); }

}  // namespace

FontNameIndex::FontNameIndex(const Array& fontArray) {
  for (size_t i = 0; i < fontArray.Count(); ++i) {
    Added(i, Dictionary(fontArray.At(i)).GetString(kGS_PostScriptNameKey));
  }
}

std::optional<size_t> FontNameIndex::First(const Entries& entries, std::string_view key) {
  const auto found = entries.lower_bound(key);
  if (found == entries.end() || found->first != key) return std::nullopt;
  return found->second;
}

std::optional<size_t> FontNameIndex::Find(std::string_view name) const {
  if (const auto exact = First(exact_, name)) return exact;
  if (const auto loose = First(loose_, Loose(name))) return loose;
  return First(strict_, Strict(name));
}

void FontNameIndex::Added(size_t index, const String& name) {
  if (!name) return;
  exact_.emplace(name.Text(), index);
  loose_.emplace(Loose(name.View()), index);
  strict_.emplace(Strict(name.View()), index);
}

void FontNameIndex::Removed(size_t index, const String& name) {
  if (!name) return;
  exact_.erase({name.Text(), index});
  loose_.erase({Loose(name.View()), index});
  strict_.erase({Strict(name.View()), index});
}

void FontNameIndex::Replaced(size_t index, const String& former, const String& name) {
  if (former.View() == name.View() && static_cast<bool>(former) == static_cast<bool>(name)) return;
  Removed(index, former);
  Added(index, name);
}

}  // namespace GlyphsureSupport
