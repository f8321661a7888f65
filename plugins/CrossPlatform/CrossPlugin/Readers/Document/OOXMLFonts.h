// The fonts in which the text of an Office Open XML file is set: .docx, .xlsx, .pptx.
#pragma once

#include <string>

#include "Readers/Document/FontStyle.h"
#include "Readers/Document/ZipDocument.h"

// Each returns one line if the document is damaged, with the fonts before the damage; otherwise an empty text.
std::string ReadFontsOfDOCX(const ZipDocument& archive, StyledFonts& fonts);
std::string ReadFontsOfXLSX(const ZipDocument& archive, StyledFonts& fonts);
std::string ReadFontsOfPPTX(const ZipDocument& archive, StyledFonts& fonts);
