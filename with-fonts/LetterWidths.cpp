#include "with-fonts/LetterWidths.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_ADVANCES_H

#include <cstdlib>
#include <memory>

namespace with_fonts {

FontLook::LetterWidths MeasureLetters(const std::string& file, int faceIndex) {
  constexpr int kUnits = 1000;
  FontLook::LetterWidths widths{};
  FT_Library opened = nullptr;
  if (FT_Init_FreeType(&opened) != 0) return widths;
  const std::unique_ptr<FT_LibraryRec_, FT_Error (*)(FT_Library)> library(opened, FT_Done_FreeType);
  FT_Face loaded = nullptr;
  if (FT_New_Face(opened, file.c_str(), faceIndex, &loaded) != 0) return widths;
  const std::unique_ptr<FT_FaceRec_, FT_Error (*)(FT_Face)> face(loaded, FT_Done_Face);
  if (!FT_IS_SFNT(loaded) || loaded->units_per_EM == 0) return widths;
  for (size_t i = 0; i < widths.size(); ++i) {
    const FT_UInt glyph = FT_Get_Char_Index(loaded, 'a' + i);
    FT_Fixed advance = 0;
    if (glyph == 0 || FT_Get_Advance(loaded, glyph, FT_LOAD_NO_SCALE, &advance) != 0 || advance < 0) continue;
    widths[i] = static_cast<uint16_t>(advance * kUnits / loaded->units_per_EM);
  }
  return widths;
}

int WidthDistance(const FontLook::LetterWidths& a, const FontLook::LetterWidths& b) {
  constexpr int kFewest = 3;
  int sum = 0, count = 0;
  for (size_t i = 0; i < a.size(); ++i) {
    if (a[i] == 0 || b[i] == 0) continue;
    sum += std::abs(a[i] - b[i]);
    ++count;
  }
  return count < kFewest ? -1 : sum / count;
}

}  // namespace with_fonts
