// The fonts in which the text of a Scribus document is set.
#pragma once

#include <string>

#include "Readers/Document/ByteStream.h"
#include "Readers/Document/FontStyle.h"

// Returns one line if the document is damaged, with the fonts before the damage; otherwise an empty text.
std::string ReadFontsOfSLA(ByteStream& stream, StyledFonts& fonts);
