#include "host/TextLayer.h"

#include <algorithm>
#include <optional>

#include "host/ByteOrder.h"
#include "host/TextData.h"
#include "platform/TextEncoding.h"

namespace host {

namespace {

using platform::TextEncoding;

constexpr uint16_t kGrayscale = 1, kRGB = 3, kCMYK = 4, kDuotone = 8, kLab = 9;
constexpr size_t kLongestLayerName = 255;
constexpr size_t kAlignment = 4;  // alignment of layer information

// The number of colour channels of a layer; nothing for a mode without layers.
std::optional<int> ColorChannels(uint16_t mode) {
  switch (mode) {
    case kGrayscale:
    case kDuotone: return 1;
    case kRGB:
    case kLab: return 3;
    case kCMYK: return 4;
    default: return std::nullopt;
  }
}

void Pad(std::string& bytes, size_t begin, size_t alignment) {
  while ((bytes.size() - begin) % alignment != 0) bytes.push_back('\0');
}

// Appends the name as a string of at most 255 bytes, and completely in a separate block.
void AppendNames(std::string& extra, const std::string& name) {
  const size_t begin = extra.size();
  const std::string shortName =
      platform::EncodeText(name, TextEncoding::kMacRoman).value_or("Text").substr(0, kLongestLayerName);
  AppendBigEndian(extra, shortName.size(), 1);
  extra += shortName;
  Pad(extra, begin, 4);
}

void AppendUnicodeName(std::string& extra, const std::string& name) {
  const std::string units = platform::EncodeText(name, TextEncoding::kUTF16BE).value_or(std::string());
  std::string data;
  AppendBigEndian(data, units.size() / 2, 4);
  data += units;
  Pad(data, 0, 4);
  extra += "8BIMluni";
  AppendBigEndian(extra, data.size(), 4);
  extra += data;
}

// The record of an empty layer, which has all channels without pixels.
std::string LayerRecord(const TextLayer& layer, int colors, int lengthWidth) {
  std::string extra;
  AppendBigEndian(extra, 0, 4);  // no mask
  AppendBigEndian(extra, 0, 4);  // no blending ranges
  AppendNames(extra, layer.text);
  const std::string text = TypeToolData(layer.text, layer.fontName);
  extra += "8BIMTySh";
  AppendBigEndian(extra, text.size(), 4);
  extra += text;
  AppendUnicodeName(extra, layer.text);

  std::string record(16, '\0');  // top, left, bottom, right
  AppendBigEndian(record, static_cast<uint64_t>(colors) + 1, 2);
  for (int channel = -1; channel < colors; ++channel) {
    AppendBigEndian(record, static_cast<uint64_t>(channel), 2);
    AppendBigEndian(record, 2, lengthWidth);  // only the compression word
  }
  record += "8BIMnorm";
  record += std::string("\xFF\0\0\0", 4);  // opaque, base, visible, filler
  AppendBigEndian(record, extra.size(), 4);
  return record + extra;
}

// The layer information with the new layers, from the number of layers on.
Pieces LayersWith(const LayeredFile& file, const std::vector<TextLayer>& added) {
  const LayerInfo& old = file.layers;
  const int colors = ColorChannels(file.colorMode).value_or(0);
  const auto more = static_cast<int16_t>(added.size());
  std::string count, records;
  AppendBigEndian(count, static_cast<uint16_t>(old.count < 0 ? old.count - more : old.count + more), 2);
  for (const TextLayer& layer : added) records += LayerRecord(layer, colors, file.LengthWidth());
  Pieces info;
  info.AddBytes(count);
  if (old.isPresent) info.AddRange(old.begin + count.size(), old.recordsEnd);
  info.AddBytes(records);
  if (old.isPresent) info.AddRange(old.recordsEnd, old.channelsEnd);
  info.AddBytes(std::string(added.size() * static_cast<size_t>(colors + 1) * 2, '\0'));
  info.AddBytes(std::string((kAlignment - info.Size() % kAlignment) % kAlignment, '\0'));
  return info;
}

// The end of the old layer information, with the padding that only its length required.
uint64_t EndOfOldLayers(const LayeredFile& file) {
  const LayerInfo& old = file.layers;
  const bool isBlock = old.lengthField != file.layersAndMask + static_cast<uint64_t>(file.LengthWidth());
  if (!isBlock) return old.end;
  const uint64_t padded = old.begin + (old.end - old.begin + 3) / 4 * 4;
  return std::min(padded, file.layersAndMaskEnd);
}

std::string Number(uint64_t value, uint64_t width) {
  std::string bytes;
  AppendBigEndian(bytes, value, static_cast<int>(width));
  return bytes;
}

}  // namespace

std::string TextLayerProblem(const LayeredFile& file) {
  if (!file.layerProblem.empty()) return file.layerProblem;
  if (!ColorChannels(file.colorMode)) return "documents in this colour mode cannot have text layers";
  return "";
}

std::string AddTextLayers(const LayeredFile& file, uint64_t size, const std::vector<TextLayer>& layers, Pieces& out) {
  if (std::string problem = TextLayerProblem(file); !problem.empty()) return problem;
  const LayerInfo& old = file.layers;
  const size_t count = static_cast<size_t>(old.count < 0 ? -old.count : old.count) + layers.size();
  if (count > INT16_MAX) return "a document can have at most 32767 layers";

  const auto width = static_cast<uint64_t>(file.LengthWidth());
  const uint64_t sectionBegin = file.layersAndMask + width;
  // Without layers, either use the length field of the section's first part, or create it with an empty mask.
  const bool hasLengthField = old.isPresent || sectionBegin < file.layersAndMaskEnd;
  const uint64_t lengthField = old.isPresent ? old.lengthField : sectionBegin;
  const uint64_t oldEnd = old.isPresent ? EndOfOldLayers(file) : sectionBegin + (hasLengthField ? width : 0);
  const uint64_t lengthWidth = old.isPresent ? old.begin - old.lengthField : width;

  const Pieces info = LayersWith(file, layers);
  Pieces section;
  section.AddRange(sectionBegin, lengthField);
  section.AddBytes(Number(info.Size(), lengthWidth));
  section.Add(info);
  if (!hasLengthField) section.AddBytes(Number(0, 4));
  section.AddRange(oldEnd, file.layersAndMaskEnd);
  if (!file.isLarge && section.Size() > UINT32_MAX) return "its layers would be too large for a .psd file";

  out = Pieces();
  out.AddRange(0, file.layersAndMask);
  out.AddBytes(Number(section.Size(), width));
  out.Add(section);
  out.AddRange(file.layersAndMaskEnd, size);
  return "";
}

std::string NewLayeredFile(bool isLarge) {
  constexpr uint64_t kWidth = 160, kHeight = 120, kChannels = 3;
  std::string bytes = "8BPS";
  AppendBigEndian(bytes, isLarge ? 2 : 1, 2);
  AppendBigEndian(bytes, 0, 6);
  AppendBigEndian(bytes, kChannels, 2);
  AppendBigEndian(bytes, kHeight, 4);
  AppendBigEndian(bytes, kWidth, 4);
  AppendBigEndian(bytes, 8, 2);
  AppendBigEndian(bytes, kRGB, 2);
  AppendBigEndian(bytes, 0, 4);                // colour mode data
  AppendBigEndian(bytes, 0, 4);                // image resources
  AppendBigEndian(bytes, 0, isLarge ? 8 : 4);  // layers and mask
  AppendBigEndian(bytes, 1, 2);                // run lengths: each row is two runs of half its white bytes
  constexpr uint64_t kRun = kWidth / 2;
  for (uint64_t row = 0; row < kHeight * kChannels; ++row) AppendBigEndian(bytes, 4, isLarge ? 4 : 2);
  for (uint64_t run = 0; run < kHeight * kChannels * 2; ++run) {
    AppendBigEndian(bytes, 257 - kRun, 1);
    AppendBigEndian(bytes, 0xFF, 1);
  }
  return bytes;
}

}  // namespace host
