// The fonts that a document names in the text data of its layers.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

// Distinct PostScript names in the order found. Text data is a tree in the notation of PostScript; a font set in it reads
// "/FontSet [ << /Name (...) ... >> ... ]", the names being strings of UTF-16 big-endian behind a byte-order mark, with a
// backslash before each byte that is a parenthesis or a backslash. Any bytes may be given; the time grows with their number
// alone. A set without its end, and a name that is no text, count as none.
std::vector<std::string> FontNamesInBytes(std::string_view bytes);

// The name as such a string, with its parentheses; empty if it is no valid UTF-8.
std::string TextDataString(const std::string& utf8);

}  // namespace host
