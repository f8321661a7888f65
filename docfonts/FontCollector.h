// Asks every reader that a document is one for, and merges by name what they found. Main thread only, after InitializeGlyphsureXMP.
#pragma once

#include "docfonts/Report.h"

namespace docfonts {

// Without what the operating system and the agent say. A file that can't be opened gives a problem.
Report CollectFonts(const std::string& path);

}  // namespace docfonts
