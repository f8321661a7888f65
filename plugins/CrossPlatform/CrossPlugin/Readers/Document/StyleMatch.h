// Finds the fonts of the library for a document that names families and styles.
#pragma once

#include <string>

#include "Readers/Document/FontStyle.h"

// Returns the PostScript name of the face of the family that is nearest to the style, as CSS orders faces: by width,
// then slant, then weight. Several files may have a face of this name. Empty if the library does not have the family,
// or there is no agent.
std::string FindPostScriptName(const FontStyle& style);
