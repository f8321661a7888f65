// The structure of a layered document (.psd, and .psb with its wider length fields), as its published file layout tells:
// a header, the colour mode data, the image resources, the layer and mask information, the composite image.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace host {

// Where the layers stand. All offsets are from the file's beginning.
struct LayerInfo {
  bool isPresent = false;
  size_t lengthField = 0;  // the field that holds the length of the information
  size_t begin = 0;        // the count of layers
  size_t recordsEnd = 0;
  size_t channelsEnd = 0;  // behind the last layer's pixels; what follows up to `end` is padding
  size_t end = 0;
  int16_t count = 0;  // below 0: as many layers, and the first alpha channel is the transparency of the composite
};

struct LayeredFile {
  bool isLarge = false;  // .psb
  uint16_t channels = 0;
  uint32_t height = 0, width = 0;
  uint16_t depth = 0;
  uint16_t colorMode = 0;
  size_t layersAndMask = 0;  // the length field of the section
  size_t layersAndMaskEnd = 0;
  LayerInfo layers;
  std::string
      layerProblem;  // why the layer information cannot be walked; the file can still be shown and saved as it is

  int LengthWidth() const { return isLarge ? 8 : 4; }  // bytes of the length fields that are wider in a .psb
};

bool HasLayeredFileSignature(std::string_view bytes);

// Reads the structure. The result is empty, or says what is wrong and at which offset: a file that is no layered document,
// a header with impossible values, a section that reaches beyond the end of the file, a composite image that is cut off.
std::string ParseLayeredFile(std::string_view bytes, LayeredFile& file);

}  // namespace host
