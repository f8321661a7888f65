// Compares the fonts of a document with those that programs see now.
#pragma once

#include <string>

#include "docfonts/Report.h"
#include "platform/Fonts.h"

namespace with_fonts {

// Returns the active face for the font, or null. `name` is the PostScript name to look for; empty to compare the style
// alone.
const platform::ActiveFont* FindActive(const docfonts::Font& font, const std::string& name,
                                       const platform::FontSnapshot& system);

// True also for named instances of variable fonts and bitmap fonts, which have no face of their own in the list.
bool IsActive(const docfonts::Font& font, const std::string& name, const platform::FontSnapshot& system);

// The file of the active face, without links; empty if there is none.
std::string FileOf(const docfonts::Font& font, const std::string& name, const platform::FontSnapshot& system);

// False for a font that is embedded in the document, or that is internal to the program that wrote it and can't be had.
bool IsNeeded(const docfonts::Font& font, const platform::FontSnapshot& system);

}  // namespace with_fonts
