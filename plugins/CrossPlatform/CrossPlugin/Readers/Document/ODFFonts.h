// The fonts in which the text of an OpenDocument file is set: text documents, spreadsheets, presentations and drawings.
#pragma once

#include <string>

#include "Readers/Document/FontStyle.h"
#include "Readers/Document/ZipDocument.h"

// Returns one line if the document is damaged, with the fonts before the damage; otherwise an empty text.
std::string ReadFontsOfODF(const ZipDocument& archive, StyledFonts& fonts);
