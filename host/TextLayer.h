// Text layers for layered documents, and the documents themselves.
#pragma once

#include <string>
#include <vector>

#include "host/LayeredFile.h"
#include "host/Pieces.h"

namespace host {

// A text layer without pixels: the next program that edits its text draws it.
struct TextLayer {
  std::string text;      // UTF-8
  std::string fontName;  // PostScript name
};

// Empty, or why no text layer can be added to a document of this structure.
std::string TextLayerProblem(const LayeredFile& file);

// Puts the file of this structure and size, with the layers above all others, into `out`, as one that ParseLayeredFile
// accepts. Every byte stays as it is but the counts and lengths of the layers, and the padding behind them. Empty, or why
// not; `out` is unchanged then.
std::string AddTextLayers(const LayeredFile& file, uint64_t size, const std::vector<TextLayer>& layers, Pieces& out);

// A white picture without layers.
std::string NewLayeredFile(bool isLarge);

}  // namespace host
