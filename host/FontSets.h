// The fonts that a document names in the text data of its layers.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "platform/ByteSource.h"

namespace host {

// Distinct PostScript names in the order found in [begin, end) of the source. Text data is a tree in the notation of
// PostScript; a font set in it reads "/FontSet [ << /Name (...) ... >> ... ]". Names are strings of UTF-16 big-endian behind
// a byte-order mark, with a backslash before each byte that is a parenthesis or a backslash. Any bytes may be given: the
// time grows with their number, the memory with the names. A set without its end is ignored, and so is a name that is no
// text or longer than kLongestFontName. After a failed read (ByteSource::Error) the names are incomplete.
constexpr size_t kLongestFontName = 4096;  // in bytes of UTF-8
class FontNames {
 public:
  void ReadFrom(platform::ByteSource& source, uint64_t begin, uint64_t end);
  const std::vector<std::string>& Found() const { return names_; }

 private:
  std::vector<std::string> names_;
  std::unordered_set<std::string> known_;
};

// The name as such a string, with its parentheses; empty if it is no valid UTF-8.
std::string TextDataString(const std::string& utf8);

}  // namespace host
