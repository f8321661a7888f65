// A font as the documents of word processors and drawing programs name it: by family, weight, slant and width, not by a
// PostScript name. Values are those of CSS.
#pragma once

#include <compare>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "Readers/Document/FontLook.h"
#include "platform/Value.h"

struct FontStyle {
  static constexpr int kNormalWeight = 400, kBoldWeight = 700, kNormalStretch = 100;

  std::string family;            // UTF-8; empty if not known
  int weight = kNormalWeight;    // 1 to 1000
  bool isItalic = false;         // or oblique
  int stretch = kNormalStretch;  // width in percent, 50 to 200

  auto operator<=>(const FontStyle&) const = default;
};

// Returns for example "DejaVu Sans Bold Italic": the family and the parts of the style that are not normal.
std::string NameOf(const FontStyle& style);

// Splits a name of this form, as text engines write it ("DejaVu Sans Bold Italic 12"). Words at the end that are no
// style belong to the family. A size at the end and a list of fallback families are left out.
FontStyle StyleOfName(std::string_view name);

// True for the families that every program replaces by one of its choice: "serif", "sans-serif", "monospace" ...
bool IsGenericFamily(std::string_view family);

// The fonts of one document, each once.
class StyledFonts {
 public:
  // Ignores empty and generic families.
  void Add(const FontStyle& style);
  // Adds the fonts of another part of the document.
  void Add(const StyledFonts& other) { mFonts.insert(other.mFonts.begin(), other.mFonts.end()); }
  // The document has this family's outlines.
  void Embed(const std::string& family) { mEmbedded.insert(family); }
  // The document says how this family looks. What it has said before stays.
  void Describe(const std::string& family, const FontLook& look) { mLooks[family].Add(look); }
  // Appends a record for each font, by name: keys of DocumentFontKeys.h.
  void AppendTo(platform::Array records) const;

 private:
  std::set<FontStyle> mFonts;
  std::set<std::string> mEmbedded;
  std::map<std::string, FontLook> mLooks;
};
