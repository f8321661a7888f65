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
  FT_Pos advance = 0;               // to the right
  bool isComplete = true;           // false if the font lacks a character
};

// Shapes the text at the face's current size. The line runs from left to right as a whole; the text decides where parts
// run from right to left. Throws std::bad_alloc.
ShapedLine ShapeLine(FT_Face face, const std::string& utf8);

// Says whether all letters of the text are of scripts that are written downwards, in columns from left to right.
bool IsWrittenDownwards(const std::string& utf8);

// The same for such a text: each word is a column, and all columns start at the height of the line. The glyphs are placed
// to be drawn a quarter turned clockwise, because fonts of these scripts hold letters that lie on their side.
ShapedLine ShapeColumns(FT_Face face, const std::string& utf8);

}  // namespace agent
