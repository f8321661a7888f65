// What people look for in a font beyond its names.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdint>

#include "platform/FontDesign.h"

namespace agent {

using platform::FontDesign;

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
