// The file of the library that the font manager would choose for a font, by the plug-in's rules.
#pragma once

#include <optional>
#include <string>

#include "docfonts/Report.h"

namespace docfonts {

// Returns the file, empty if there is none, or nothing if the agent does not answer. Asks the connected manager
// (FontManagerInterface), which must exist; main thread only. Activates nothing.
std::optional<std::string> ChooseFile(const Font& font);

}  // namespace docfonts
