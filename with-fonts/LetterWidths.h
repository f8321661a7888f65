// The widths of a font's letters.
#pragma once

#include <string>

#include "Readers/Document/FontLook.h"

namespace with_fonts {

// Returns the widths of the letters of a face, all 0 if the file can't be read or has no table of widths: outlines,
// which can be broken in many ways, are not read. `faceIndex` counts from 0.
FontLook::LetterWidths MeasureLetters(const std::string& file, int faceIndex);

// Returns how far the widths are from each other on average, in thousandths of the em. Negative if that can't be said:
// fewer than three letters are known of both.
int WidthDistance(const FontLook::LetterWidths& a, const FontLook::LetterWidths& b);

}  // namespace with_fonts
