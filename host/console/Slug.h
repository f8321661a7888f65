// Reads the identification data that a save wrote into a document, as any other program would.
#pragma once

#include <string>
#include <vector>

namespace console {

// Returns the PostScript names in the order of the document's slug; empty if the file has none or cannot contain XMP.
// Returns false, with one line in *problem, if the file cannot be read.
bool ReadSlugNames(const std::string& path, std::vector<std::string>* names, std::string* problem);

}  // namespace console
