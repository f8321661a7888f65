// What a text layer holds beside its pixels: the text, its placing, and the text data with the fonts.
#pragma once

#include <string>

namespace host {

// The content of a layer's "TySh" block for one line of text in one font (a PostScript name), black, at 12 points; both
// UTF-8. Its length is even.
std::string TypeToolData(const std::string& text, const std::string& fontName);

}  // namespace host
