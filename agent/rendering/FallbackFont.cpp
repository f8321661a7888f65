#include "agent/rendering/FallbackFont.h"

#include <fontconfig/fontconfig.h>
#include <unicode/unistr.h>

#include <memory>

#include "agent/rendering/FreeWith.h"

namespace agent {

namespace {

using Pattern = std::unique_ptr<FcPattern, FreeWith<FcPatternDestroy>>;
using CharSet = std::unique_ptr<FcCharSet, FreeWith<FcCharSetDestroy>>;
using FontSet = std::unique_ptr<FcFontSet, FreeWith<FcFontSetDestroy>>;

CharSet CharactersOf(const std::string& utf8) {
  CharSet characters(FcCharSetCreate());
  const icu::UnicodeString text = icu::UnicodeString::fromUTF8(utf8);
  for (int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
    FcCharSetAddChar(characters.get(), static_cast<FcChar32>(text.char32At(i)));
  }
  return characters;
}

}  // namespace

std::optional<FallbackFont> FindFallbackFont(const std::string& utf8, const std::string& notPath) {
  const CharSet characters = CharactersOf(utf8);
  const Pattern pattern(FcPatternCreate());
  FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>("sans-serif"));
  FcPatternAddCharSet(pattern.get(), FC_CHARSET, characters.get());
  FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
  FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
  FcDefaultSubstitute(pattern.get());
  FcResult result = FcResultNoMatch;
  const FontSet fonts(FcFontSort(nullptr, pattern.get(), FcFalse, nullptr, &result));
  std::optional<FallbackFont> closest;
  for (int i = 0; fonts && i < fonts->nfont; ++i) {
    FcPattern* font = fonts->fonts[i];
    FcChar8* path = nullptr;
    FallbackFont found;
    FcBool isScalable = FcFalse;
    FcCharSet* covered = nullptr;
    FcPatternGetBool(font, FC_SCALABLE, 0, &isScalable);
    if (!isScalable || FcPatternGetString(font, FC_FILE, 0, &path) != FcResultMatch) continue;
    found.path = reinterpret_cast<const char*>(path);
    FcPatternGetInteger(font, FC_INDEX, 0, &found.faceIndex);
    if (found.path == notPath) continue;
    FcPatternGetCharSet(font, FC_CHARSET, 0, &covered);
    if (covered && FcCharSetIsSubset(characters.get(), covered)) return found;
    if (!closest) closest = found;
  }
  return closest;
}

}  // namespace agent
