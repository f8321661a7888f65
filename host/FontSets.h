// Finds the fonts that a document names in the text data of its layers.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "platform/ByteSource.h"

namespace host {

// Returns the distinct PostScript names in [begin, end) of the source, in the order found. Text data is a tree in the
// notation of PostScript; a font set in it is "/FontSet [ << /Name (...) ... >> ... ]". Names are strings of UTF-16
// big-endian after a byte-order mark, with a backslash before each byte that is a parenthesis or a backslash. The input
// may be any bytes: the time is linear in their number, the memory in the names. Ignores a set without its end, and
// names that are not text or longer than kLongestFontName. After a failed read (ByteSource::Error) the names are
// incomplete.
constexpr size_t kLongestFontName = 4096;  // bytes of UTF-8
class FontNames {
 public:
  void ReadFrom(platform::ByteSource& source, uint64_t begin, uint64_t end);
  const std::vector<std::string>& Found() const { return names_; }

 private:
  std::vector<std::string> names_;
  std::unordered_set<std::string> known_;
};

// Encodes the name as such a string, with its parentheses; empty if it is not valid UTF-8.
std::string TextDataString(const std::string& utf8);

}  // namespace host
