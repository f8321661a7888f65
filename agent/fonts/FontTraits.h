// What people look for in a font beyond its names.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdint>
#include <string_view>

namespace agent {

enum class FontDesign : uint8_t { kUnknown, kSerif, kSlab, kSans, kScript, kDecorative, kSymbol };
// The word for rules and reports: "serif"; "unknown" for kUnknown.
std::string_view WordOf(FontDesign design);

struct FontTraits {
  uint16_t weight = 400;  // 1 to 1000, as in the OS/2 table: 400 regular, 700 bold
  uint8_t width = 5;      // 1 to 9, as in the OS/2 table: 5 normal, below condensed, above expanded
  FontDesign design = FontDesign::kUnknown;
  bool isItalic : 1 = false;  // or oblique
  bool isMonospaced : 1 = false;
  bool isVariable : 1 = false;
  bool isColoured : 1 = false;
  bool operator==(const FontTraits&) const = default;
};

FontTraits TraitsOf(FT_Face face);

}  // namespace agent
