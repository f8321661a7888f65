// The identification data that a save put into a document, read back from the file as any other program would.
#pragma once

#include <string>
#include <vector>

namespace console {

// The PostScript names in the order of the document's slug; empty if the file has none or holds no XMP. False, with one
// line in *problem, if the file can't be read.
bool ReadSlugNames(const std::string& path, std::vector<std::string>* names, std::string* problem);

}  // namespace console
