// The words of a command line of the console.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace console {

using Words = std::vector<std::string>;

// Words are parted by blanks. Single and double quotes hold blanks together, a backslash takes the next character as it
// is (not within single quotes), "#" at the start of a word begins a comment. Empty, or one line that says what is wrong.
std::string SplitWords(std::string_view line, Words& words);

// The inverse: a word that SplitWords reads back as it was.
std::string QuoteWord(std::string_view word);

// A line that is still being written: the finished words, and the one that the cursor stands in or begins.
struct PartialLine {
  Words words;
  std::string partial;  // may be empty
  size_t start = 0;     // where the partial word begins in the line
};
PartialLine SplitPartialLine(std::string_view upToCursor);

}  // namespace console
