// Suggestions for a font that is missing.
#pragma once

#include <string>
#include <vector>

#include "docfonts/Report.h"

namespace with_fonts {

// Returns the PostScript names of a few fonts of the library: those of families with a similar name, the nearest style
// first. Empty if there are none, or the agent does not answer. Uses a connection of its own to the agent of
// platform::GetPlaces(), which has a thread until the call ends.
std::vector<std::string> NearestFonts(const docfonts::Font& missing);

}  // namespace with_fonts
