// Completes a command line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace console {

struct Candidates {
  size_t start = 0;                // position in the line where a candidate starts
  std::vector<std::string> words;  // quoted as necessary; sorted
};

// Completes commands for the first word, then what the command takes: paths (folders with "/" at their end), open
// documents, keys of preferences, names of listings.
Candidates CompleteLine(std::string_view upToCursor, const std::vector<std::string>& openDocuments);

// Returns the longest common start of all candidates, in whole UTF-8 characters.
std::string CommonStart(const std::vector<std::string>& words);

}  // namespace console
