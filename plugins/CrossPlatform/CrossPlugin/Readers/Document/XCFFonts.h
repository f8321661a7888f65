// The fonts of the text layers of a GIMP image.
#pragma once

#include <string>

#include "Readers/Document/FontStyle.h"
#include "platform/ByteSource.h"

// Returns one line if the image is damaged, with the fonts before the damage; otherwise an empty text.
std::string ReadFontsOfXCF(platform::ByteSource& source, StyledFonts& fonts);
