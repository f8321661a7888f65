// The fonts in which the text of an SVG image is set.
#pragma once

#include <string>

#include "Readers/Document/ByteStream.h"
#include "Readers/Document/FontStyle.h"

// Returns one line if the image is damaged, with the fonts before the damage; otherwise an empty text.
std::string ReadFontsOfSVG(ByteStream& stream, StyledFonts& fonts);
