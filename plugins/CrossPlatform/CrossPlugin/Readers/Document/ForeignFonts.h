// The fonts of documents of other programs, for the table of readers. Each function appends a record for each font in
// which text is set, and adds a problem if the document is damaged.
#pragma once

#include <string>
#include <vector>

#include "Readers/Document/ReadableDocument.h"
#include "platform/Value.h"

// SVG images, also compressed ones.
void ListFontsOfSVG(ReadableDocument& document, platform::Array records, std::vector<std::string>& problems);
// OpenDocument, Office Open XML, Krita's images, and IDML, whose records have PostScript names.
void ListFontsOfArchive(ReadableDocument& document, platform::Array records, std::vector<std::string>& problems);
// Scribus documents, also compressed ones.
void ListFontsOfSLA(ReadableDocument& document, platform::Array records, std::vector<std::string>& problems);
void ListFontsOfXCF(ReadableDocument& document, platform::Array records, std::vector<std::string>& problems);
