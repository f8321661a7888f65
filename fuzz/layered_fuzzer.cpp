// Any bytes as a layered document, as the host reads it. After text is added, it reads back with that many more layers,
// names the new font, and has everything else.
#include <algorithm>

#include "Check.h"
#include "Input.h"
#include "support/LayeredBytes.h"

namespace {

using namespace host;
using namespace test_support;

bool Names(std::string_view bytes, const std::string& font) {
  const std::vector<std::string> names = FontNamesIn(bytes);
  return std::find(names.begin(), names.end(), font) != names.end();
}

int LayerCount(const LayeredFile& file) { return file.layers.count < 0 ? -file.layers.count : file.layers.count; }

std::string_view Records(std::string_view bytes, const LayerInfo& layers, size_t length) {
  return layers.isPresent ? bytes.substr(layers.begin + 2, length) : std::string_view();
}

void CheckAdded(std::string_view bytes, const LayeredFile& file, const std::string& out) {
  LayeredFile read;
  CHECK(ParseLayered(out, read).empty());
  CHECK(read.layerProblem.empty() && read.layers.isPresent);
  CHECK(LayerCount(read) == LayerCount(file) + 2 && (read.layers.count < 0) == (file.layers.count < 0));
  CHECK(bytes.substr(0, file.layersAndMask) == std::string_view(out).substr(0, read.layersAndMask));
  CHECK(bytes.substr(file.layersAndMaskEnd) == std::string_view(out).substr(read.layersAndMaskEnd));
  const size_t recordsSize = file.layers.isPresent ? file.layers.recordsEnd - file.layers.begin - 2 : 0;
  CHECK(Records(bytes, file.layers, recordsSize) == Records(out, read.layers, recordsSize));
  CHECK(Names(out, "Fuzz(Regular") && Names(out, "Fuzz\\B\xC3\xB6ld"));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes = BytesOf(data, size);
  for (const std::string& name : FontNamesIn(bytes)) {
    CHECK(FontNamesIn("/FontSet [ << /Name " + TextDataString(name) + " >> ]") == std::vector<std::string>{name});
  }
  LayeredFile file;
  if (!ParseLayered(bytes, file).empty()) return 0;
  CHECK(file.layersAndMask < file.layersAndMaskEnd && file.layersAndMaskEnd <= size);
  std::string out;
  const std::string problem = AddTexts(bytes, {{"One", "Fuzz(Regular"}, {"Two", "Fuzz\\B\xC3\xB6ld"}}, out);
  const bool isFull = LayerCount(file) + 2 > INT16_MAX;
  CHECK(problem.empty() == (TextLayerProblem(file).empty() && !isFull));
  if (problem.empty()) CheckAdded(bytes, file, out);
  return 0;
}
