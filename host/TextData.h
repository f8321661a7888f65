// The data of a text layer other than its pixels: the text, its position, and the text data with the fonts.
#pragma once

#include <string>

namespace host {

// Returns the content of a layer's "TySh" block for one line of text (UTF-8) in one font (a PostScript name, UTF-8),
// black, 12 points. Its length is even.
std::string TypeToolData(const std::string& text, const std::string& fontName);

}  // namespace host
