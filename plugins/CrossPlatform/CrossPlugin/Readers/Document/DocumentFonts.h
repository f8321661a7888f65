// What the readers found in a document.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Value.h"

struct DocumentFonts {
  // The records that one way of finding fonts gave, under the word by which docfonts names it.
  struct Source {
    const char* name;
    platform::Array records;
  };
  // In the order in which readers came to them.
  std::vector<Source> sources;
  std::vector<std::string> problems;  // one line for a person each: why fonts may be missing

  // The records of a source, to append to. The name is a literal.
  platform::Array From(const char* name) {
    for (const Source& source : sources) {
      if (std::string_view(source.name) == name) return source.records;
    }
    return sources.emplace_back(Source{name, platform::Array::Create()}).records;
  }
};

// What a record says of the document's own copy of a font, beside the font's own keys.
inline constexpr std::string_view kDocumentFont_EmbeddedKey = "Embedded";    // "1" or "0"
inline constexpr std::string_view kDocumentFont_SubsetTagKey = "SubsetTag";  // six letters
inline constexpr std::string_view kDocumentFont_TypeKey = "FontType";        // as a PDF names it
