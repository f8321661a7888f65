// The structure of a layered document (.psd, and .psb with its wider length fields) in its published file layout: a header,
// the colour mode data, the image resources, the layer and mask information, the composite image.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ByteSource.h"

namespace host {

// Where the layers are. All offsets are from the file's beginning.
struct LayerInfo {
  bool isPresent = false;
  uint64_t lengthField = 0;  // the field that holds the length of the information
  uint64_t begin = 0;        // the count of layers
  uint64_t recordsEnd = 0;
  uint64_t channelsEnd = 0;  // behind the last layer's pixels; what follows up to `end` is padding
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
  uint64_t imageEnd = 0;  // of the composite image, as far as its length is known without decoding it
  LayerInfo layers;
  // Why the layer information cannot be walked; the file can still be shown and saved as it is.
  std::string layerProblem;

  int LengthWidth() const { return isLarge ? 8 : 4; }  // bytes of the length fields that are wider in a .psb
};

bool HasLayeredFileSignature(std::string_view bytes);

// Reads the structure, without the pixels. The result is empty, or says what is wrong and at which offset: a file that is no
// layered document, a header with impossible values, a section that reaches beyond the end of the file, a composite image
// that is cut off. After a failed read (ByteSource::Error) it says nothing useful.
std::string ParseLayeredFile(platform::ByteSource& source, LayeredFile& file);

// The parts of the file, as [begin, end), that are not known to be pixels.
std::vector<std::pair<uint64_t, uint64_t>> PartsWithoutPixels(const LayeredFile& file, uint64_t size);

}  // namespace host
