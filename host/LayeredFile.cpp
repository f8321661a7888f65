#include "host/LayeredFile.h"

#include <array>

#include "host/ByteOrder.h"

namespace host {

namespace {

constexpr std::string_view kSignature = "8BPS";
constexpr size_t kHeaderSize = 26;
constexpr uint16_t kMostChannels = 56;
constexpr uint32_t kLargestSide = 30000, kLargestSideOfLarge = 300000;
constexpr int kRawData = 0, kRunLengthData = 1, kLastCompression = 3;

std::string At(uint64_t offset) { return " at offset " + std::to_string(offset); }

std::string Truncated(const std::string& what, uint64_t offset, uint64_t needed, uint64_t there) {
  return "the file is truncated: " + what + At(offset) + " needs " + std::to_string(needed) + " bytes, " +
         std::to_string(there) + " are there";
}

std::string ParseHeader(platform::ByteSource& source, LayeredFile& file) {
  if (!HasLayeredFileSignature(source.View(0, kHeaderSize))) {
    return "the file is not a PSD document: it does not begin with \"8BPS\"";
  }
  if (source.Size() < kHeaderSize) return Truncated("the header", 0, kHeaderSize, source.Size());
  BigEndianReader reader(source, kSignature.size(), kHeaderSize);
  const auto version = reader.Read(2);
  if (version != 1 && version != 2) return "PSD version " + std::to_string(version) + " is not supported";
  file.isLarge = version == 2;
  reader.Skip(6);
  file.channels = static_cast<uint16_t>(reader.Read(2));
  file.height = static_cast<uint32_t>(reader.Read(4));
  file.width = static_cast<uint32_t>(reader.Read(4));
  file.depth = static_cast<uint16_t>(reader.Read(2));
  file.colorMode = static_cast<uint16_t>(reader.Read(2));
  const uint32_t largest = file.isLarge ? kLargestSideOfLarge : kLargestSide;
  if (file.channels < 1 || file.channels > kMostChannels) {
    return "the header has an impossible number of channels, " + std::to_string(file.channels);
  }
  if (file.height < 1 || file.height > largest || file.width < 1 || file.width > largest) {
    return "the header has an impossible size, " + std::to_string(file.width) + " by " + std::to_string(file.height);
  }
  if (file.depth != 1 && file.depth != 8 && file.depth != 16 && file.depth != 32) {
    return "the header has an impossible depth, " + std::to_string(file.depth) + " bits per channel";
  }
  return "";
}

// Skips a section with its length field; `begin` receives the position of that field.
std::string PassSection(BigEndianReader& reader, const char* name, int width, uint64_t& begin) {
  begin = reader.Offset();
  const uint64_t there = reader.Left();
  const uint64_t length = reader.Read(width);
  if (!reader.Ok()) return Truncated(name, begin, static_cast<uint64_t>(width), there);
  if (length > reader.Left()) return Truncated(name, begin, length, reader.Left());
  reader.Skip(length);
  return "";
}

// The total length of all rows; a table at the beginning contains the length of each.
uint64_t RunLengthBytes(BigEndianReader reader, uint64_t rows, int width) {
  uint64_t needed = rows * static_cast<uint64_t>(width);
  if (needed > reader.Left()) return needed;
  for (uint64_t row = 0; row < rows; ++row) needed += reader.Read(width);
  return needed;
}

std::string CheckImage(BigEndianReader reader, LayeredFile& file) {
  const uint64_t begin = reader.Offset(), there = reader.Left();
  const uint64_t compression = reader.Read(2);
  if (!reader.Ok()) return Truncated("the composite image", begin, 2, there);
  if (compression > kLastCompression) return "unknown compression " + std::to_string(compression) + At(begin);
  const uint64_t rows = uint64_t{file.height} * file.channels;
  uint64_t needed = 0;  // other compressions must be decoded to know the length
  if (compression == kRawData) needed = (uint64_t{file.width} * file.depth + 7) / 8 * rows;
  if (compression == kRunLengthData) needed = RunLengthBytes(reader, rows, file.isLarge ? 4 : 2);
  if (needed > reader.Left()) return Truncated("the composite image", begin, needed + 2, there);
  file.imageEnd = reader.Offset() + needed;
  return "";
}

// Skips one layer's record and adds up the length of its pixels.
bool PassRecord(BigEndianReader& reader, int lengthWidth, uint64_t& pixels) {
  reader.Skip(16);  // rectangle
  const uint64_t channels = reader.Read(2);
  for (uint64_t i = 0; i < channels && reader.Ok(); ++i) {
    reader.Skip(2);
    const uint64_t length = reader.Read(lengthWidth);
    if (length > UINT64_MAX - pixels) return false;
    pixels += length;
  }
  reader.Skip(12);  // blending
  const uint64_t extra = reader.Read(4);
  reader.Skip(extra);
  return reader.Ok();
}

// Walks the layers in [begin, end); `problem` says why that is impossible.
void ParseLayers(platform::ByteSource& source, LayeredFile& file, uint64_t lengthField, uint64_t begin, uint64_t end) {
  LayerInfo& layers = file.layers;
  BigEndianReader reader(source, begin, end);
  layers.lengthField = lengthField;
  layers.begin = begin;
  layers.end = end;
  layers.count = static_cast<int16_t>(reader.Read(2));
  const int count = layers.count < 0 ? -layers.count : layers.count;
  uint64_t pixels = 0;
  for (int i = 0; i < count; ++i) {
    if (PassRecord(reader, file.LengthWidth(), pixels)) continue;
    file.layerProblem =
        "the record of layer " + std::to_string(i + 1) + " reaches beyond the layer information" + At(begin);
    return;
  }
  layers.recordsEnd = reader.Offset();
  reader.Skip(pixels);
  layers.channelsEnd = reader.Offset();
  if (!reader.Ok()) file.layerProblem = "the layers' pixels reach beyond the layer information" + At(begin);
  layers.isPresent = reader.Ok();
}

// Blocks after the global mask whose length field is wider in a .psb.
bool HasWideLength(std::string_view key) {
  static constexpr std::array<std::string_view, 13> kWide = {"LMsk", "Lr16", "Lr32", "Layr", "Mt16", "Mt32", "Mtrn",
                                                             "Alph", "FMsk", "lnk2", "FEid", "FXid", "PxSD"};
  for (const std::string_view each : kWide) {
    if (each == key) return true;
  }
  return false;
}

// Documents with 16 or 32 bits have their layers in a separate block after the global mask.
void FindDeepLayers(platform::ByteSource& source, LayeredFile& file, uint64_t at) {
  BigEndianReader reader(source, at, file.layersAndMaskEnd);
  reader.Skip(reader.Read(4));  // the global mask
  while (reader.Ok() && reader.Left() >= 12) {
    const std::string mark(source.View(reader.Offset(), 8).substr(0, 8));
    if (!mark.starts_with("8BIM") && !mark.starts_with("8B64")) break;
    const std::string key = mark.substr(4);
    reader.Skip(8);
    const uint64_t lengthField = reader.Offset();
    const uint64_t length = reader.Read(file.isLarge && HasWideLength(key) ? 8 : 4);
    if (!reader.Ok() || length > reader.Left()) break;
    const uint64_t begin = reader.Offset();
    if ((key == "Lr16" || key == "Lr32") && length >= 2) {
      ParseLayers(source, file, lengthField, begin, begin + length);
      return;
    }
    reader.Skip((length + 3) / 4 * 4);
  }
  if (reader.Left() >= 12) file.layerProblem = "unknown data behind the layers" + At(reader.Offset());
}

void ParseLayersAndMask(platform::ByteSource& source, LayeredFile& file) {
  const uint64_t begin = file.layersAndMask + static_cast<uint64_t>(file.LengthWidth());
  if (begin == file.layersAndMaskEnd) return;
  BigEndianReader reader(source, begin, file.layersAndMaskEnd);
  const uint64_t length = reader.Read(file.LengthWidth());
  if (!reader.Ok() || length > reader.Left()) {
    file.layerProblem = "the layer information reaches beyond its section" + At(begin);
  } else if (length >= 2) {
    ParseLayers(source, file, begin, reader.Offset(), reader.Offset() + length);
  } else {
    FindDeepLayers(source, file, reader.Offset() + length);
  }
}

}  // namespace

bool HasLayeredFileSignature(std::string_view bytes) { return bytes.starts_with(kSignature); }

std::string ParseLayeredFile(platform::ByteSource& source, LayeredFile& file) {
  file = LayeredFile();
  std::string problem = ParseHeader(source, file);
  BigEndianReader reader(source, kHeaderSize, source.Size());
  uint64_t begin = 0;
  if (problem.empty()) problem = PassSection(reader, "the colour mode data", 4, begin);
  if (problem.empty()) problem = PassSection(reader, "the image resources", 4, file.resources);
  if (problem.empty()) {
    problem = PassSection(reader, "the layer and mask information", file.LengthWidth(), file.layersAndMask);
  }
  if (problem.empty()) problem = CheckImage(reader, file);
  if (!problem.empty()) return problem;
  file.layersAndMaskEnd = reader.Offset();
  ParseLayersAndMask(source, file);
  return "";
}

std::vector<std::pair<uint64_t, uint64_t>> PartsWithoutPixels(const LayeredFile& file, uint64_t size) {
  const LayerInfo& layers = file.layers;
  if (!layers.isPresent) return {{0, file.layersAndMaskEnd}, {file.imageEnd, size}};
  return {{0, layers.recordsEnd}, {layers.channelsEnd, file.layersAndMaskEnd}, {file.imageEnd, size}};
}

}  // namespace host
