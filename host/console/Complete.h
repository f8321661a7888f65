// What may follow in a command line that is being written.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace console {

struct Candidates {
  size_t start = 0;                // the place in the line from which a candidate replaces
  std::vector<std::string> words;  // quoted as the line needs it; sorted
};

// Commands for the first word; then what the command takes: paths (folders with "/" at their end), open documents, keys
// of preferences, names of listings.
Candidates CompleteLine(std::string_view upToCursor, const std::vector<std::string>& openDocuments);

// The longest text of whole UTF-8 characters with which all candidates begin.
std::string CommonStart(const std::vector<std::string>& words);

}  // namespace console
