// Finds the fonts of the library for a document that names families and styles.
#pragma once

#include <string>

#include "Readers/Document/FontStyle.h"

// The percentage for a width of the OS/2 table, 1 to 9; 100 for any other number.
int StretchOfWidthClass(long width);

// Returns the PostScript name of the face of the family that is nearest to the style, as CSS orders faces: by width,
// then slant, then weight. Several files may have a face of this name. Empty if the library does not have the family,
// or there is no agent.
std::string FindPostScriptName(const FontStyle& style);
