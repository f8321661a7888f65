// Runs every reader for the kind of the document and merges what they find by name. Main thread only, after
// InitializeGlyphsureXMP.
#pragma once

#include "docfonts/Report.h"

namespace docfonts {

// Returns the report, without what the operating system and the agent know. A file that cannot be opened gives a
// problem.
Report CollectFonts(const std::string& path);

}  // namespace docfonts
