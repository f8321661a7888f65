// Keys that the readers add to font records: what a document says about its own copy of a font.
#pragma once

#include <string_view>

inline constexpr std::string_view kDocumentFont_EmbeddedKey = "Embedded";    // "1" or "0"
inline constexpr std::string_view kDocumentFont_SubsetTagKey = "SubsetTag";  // six letters
inline constexpr std::string_view kDocumentFont_TypeKey = "FontType";        // as a PDF names it
