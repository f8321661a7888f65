// The structure of a layered document (.psd, or .psb with wider length fields) in its published file format: a header,
// the colour mode data, the image resources, the layer and mask information, and the composite image.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ByteSource.h"

namespace host {

// The positions of the layers. All offsets are from the start of the file.
struct LayerInfo {
  bool isPresent = false;
  uint64_t lengthField = 0;  // the field with the length of the information
  uint64_t begin = 0;        // the number of layers
  uint64_t recordsEnd = 0;
  uint64_t channelsEnd = 0;  // after the last layer's pixels; the rest up to `end` is padding
  uint64_t end = 0;
  int16_t count = 0;  // below 0: as many layers, and the first alpha channel is the transparency of the composite
};

struct LayeredFile {
  bool isLarge = false;  // .psb
  uint16_t channels = 0;
  uint32_t height = 0, width = 0;
  uint16_t depth = 0;
  uint16_t colorMode = 0;
  uint64_t resources = 0;      // the length field of the image resources
  uint64_t layersAndMask = 0;  // the length field of the section
  uint64_t layersAndMaskEnd = 0;
  uint64_t imageEnd = 0;  // end of the composite image, as far as it is known without decoding
  LayerInfo layers;
  // Why the layer information cannot be parsed. The file can still be opened and saved unchanged.
  std::string layerProblem;

  int LengthWidth() const { return isLarge ? 8 : 4; }  // bytes of the length fields that are wider in a .psb
};

bool HasLayeredFileSignature(std::string_view bytes);

// Reads the structure without the pixels. Returns an empty text, or what is wrong and at which offset: not a layered
// document, a header with impossible values, a section beyond the end of the file, a truncated composite image. Check
// ByteSource::Error first: after a failed read the text is meaningless.
std::string ParseLayeredFile(platform::ByteSource& source, LayeredFile& file);

// Returns the parts of the file, as [begin, end), that are not known to be pixels.
std::vector<std::pair<uint64_t, uint64_t>> PartsWithoutPixels(const LayeredFile& file, uint64_t size);

}  // namespace host
