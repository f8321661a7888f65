// Creates text layers for layered documents, and new documents.
#pragma once

#include <string>
#include <vector>

#include "host/LayeredFile.h"
#include "host/Pieces.h"

namespace host {

// A text layer without pixels: the next program that edits its text draws them.
struct TextLayer {
  std::string text;      // UTF-8
  std::string fontName;  // PostScript name
};

// Returns why text layers cannot be added to a document of this structure; empty if they can.
std::string TextLayerProblem(const LayeredFile& file);

// Sets `out` to the file with this structure and size and with the layers above all others; ParseLayeredFile accepts
// the result. Changes only the counts and lengths of the layers and the padding after them. Returns an empty text, or
// the reason, with `out` unchanged.
std::string AddTextLayers(const LayeredFile& file, uint64_t size, const std::vector<TextLayer>& layers, Pieces& out);

// Returns a white picture without layers.
std::string NewLayeredFile(bool isLarge);

}  // namespace host
