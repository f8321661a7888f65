// Layered documents in memory.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/FontSets.h"
#include "host/LayeredFile.h"
#include "host/TextLayer.h"

namespace test_support {

inline std::string ParseLayered(std::string_view bytes, host::LayeredFile& file) {
  platform::ByteSource source(bytes);
  return host::ParseLayeredFile(source, file);
}

// Returns an empty text, or what is wrong.
inline std::string AddTexts(std::string_view bytes, const std::vector<host::TextLayer>& layers, std::string& out) {
  host::LayeredFile file;
  host::Pieces pieces;
  std::string problem = ParseLayered(bytes, file);
  if (problem.empty()) problem = host::AddTextLayers(file, bytes.size(), layers, pieces);
  if (problem.empty()) out = pieces.Join(bytes);
  return problem;
}

inline std::vector<std::string> FontNamesIn(std::string_view bytes) {
  platform::ByteSource source(bytes);
  host::FontNames names;
  names.ReadFrom(source, 0, bytes.size());
  return names.Found();
}

}  // namespace test_support
