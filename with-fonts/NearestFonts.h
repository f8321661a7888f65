// Suggestions for a font that is missing.
#pragma once

#include <string>
#include <vector>

#include "docfonts/Report.h"

namespace with_fonts {

// Returns the PostScript names of a few fonts of the library that can stand for the font, the nearest first. They are
// of the same family or of one with the same widths; if there is none, of a family with a similar name; otherwise of a
// similar look, if the document says how the font looks. Among them the look, the style and the widths of letters
// decide. Empty if there are none, or the agent does not answer. Uses a connection of its own to the agent of
// platform::GetPlaces(), which has a thread until the call ends.
std::vector<std::string> NearestFonts(const docfonts::Font& missing);

}  // namespace with_fonts
