// Runs the program docfonts for documents that the plug-in does not read. It is a separate process, so a malicious
// document cannot harm the host.
#pragma once

#include <string>
#include <vector>

namespace console {

struct ListedFonts {
  std::vector<std::string> names;  // PostScript names, in the order found
  std::string problem;             // one line: why some may be missing; empty if none are
};

// Runs the program at this path and waits for it, a little longer than it may read the document (see ReadingTime.h).
// What goes wrong is the problem.
ListedFonts ListFonts(const std::string& program, const std::string& document);

}  // namespace console
