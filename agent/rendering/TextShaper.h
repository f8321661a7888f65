// Arranges the glyphs of a line of text, with HarfBuzz, for any script and direction.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <string>
#include <vector>

namespace agent {

// Positions are in 26.6 pixels from the start of the line, upwards and to the right.
struct PlacedGlyph {
  FT_UInt index;
  FT_Pos x, y;
};

struct ShapedLine {
  std::vector<PlacedGlyph> glyphs;  // from left to right
  FT_Pos advance = 0;
  bool isComplete = true;  // false if the font lacks a character
};

// Shapes the text at the face's current size. The line runs from left to right as a whole; the text decides where parts
// run from right to left. Scripts that are written downwards are set from left to right, as in other lists. Throws
// std::bad_alloc.
ShapedLine ShapeLine(FT_Face face, const std::string& utf8);

}  // namespace agent
