// The program docfonts, asked for the fonts of documents that the plug-in does not read. A document can't harm the host by
// what it makes a reader do.
#pragma once

#include <string>
#include <vector>

namespace console {

struct ListedFonts {
  std::vector<std::string> names;  // PostScript names, in the order found
  std::string problem;             // one line: why some may be missing; empty if none are
};

// Waits for the program at that path, half a minute at most.
ListedFonts ListFonts(const std::string& program, const std::string& document);

}  // namespace console
