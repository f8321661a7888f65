// What the readers found in a document.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Value.h"

// Font records by where they were found.
struct DocumentFonts {
  platform::Array parser =
      platform::Array::Create();  // the document's own structure, as far as the plug-in understands it
  platform::Array pdf = platform::Array::Create();   // a PDF's whole structure; with the keys below
  platform::Array scan = platform::Array::Create();  // text around font names
  platform::Array list = platform::Array::Create();  // the font list of Adobe applications in the metadata
  platform::Array slug = platform::Array::Create();  // the identification that this system stored in the metadata
  std::vector<std::string> problems;                 // one line for a person each: why fonts may be missing
};

// What a record says of the document's own copy of a font, beside the font's own keys.
inline constexpr std::string_view kDocumentFont_EmbeddedKey = "Embedded";    // "1" or "0"
inline constexpr std::string_view kDocumentFont_SubsetTagKey = "SubsetTag";  // six letters
inline constexpr std::string_view kDocumentFont_TypeKey = "FontType";        // as a PDF names it
