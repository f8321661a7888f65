// The words of a console command line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace console {

using Words = std::vector<std::string>;

// Splits at blanks. Single and double quotes keep blanks together, a backslash takes the next character literally (not
// within single quotes), and "#" at the start of a word begins a comment. Returns an empty text, or one line that says
// what is wrong.
std::string SplitWords(std::string_view line, Words& words);

// The inverse: quotes a word so that SplitWords returns it unchanged.
std::string QuoteWord(std::string_view word);

// A line that is being typed: the finished words, and the word at the cursor.
struct PartialLine {
  Words words;
  std::string partial;  // may be empty
  size_t start = 0;     // start of the partial word in the line
};
PartialLine SplitPartialLine(std::string_view upToCursor);

}  // namespace console
