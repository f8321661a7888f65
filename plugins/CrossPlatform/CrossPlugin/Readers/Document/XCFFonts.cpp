#include "Readers/Document/XCFFonts.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "platform/TextEncoding.h"

namespace {

constexpr const char* kDamaged = "its list of layers is damaged";
constexpr const char* kDamagedName = "the name of a font is damaged";

struct TextLayers {
  StyledFonts& fonts;
  bool hasDamagedName = false;

  void Add(const std::string& name) {
    if (platform::IsValidUTF8(name)) return fonts.Add(StyleOfName(name));
    hasDamagedName = true;
  }
};

// Reads big-endian numbers and counted strings.
class Cursor {
 public:
  Cursor(platform::ByteSource& source, uint64_t at) : mSource(source), mAt(at) {}

  bool Ok() const { return mIsOk; }
  uint64_t At() const { return mAt; }
  void Skip(uint64_t count) {
    mIsOk = mIsOk && count <= mSource.Size() - std::min(mAt, mSource.Size());
    if (mIsOk) mAt += count;
  }
  uint64_t Number(size_t size) {
    uint64_t number = 0;
    for (const char c : Bytes(size)) number = number << 8 | static_cast<unsigned char>(c);
    return number;
  }
  uint32_t Number32() { return static_cast<uint32_t>(Number(sizeof(uint32_t))); }
  // Empty after the end of the file.
  std::string Bytes(size_t count) {
    std::string bytes;
    if (count <= mSource.Size()) bytes = mSource.View(mAt, count).substr(0, count);
    mIsOk = mIsOk && bytes.size() == count;
    mAt += bytes.size();
    return mIsOk ? bytes : std::string();
  }
  // A length with the final NUL, and the characters.
  std::string CountedText() {
    constexpr uint32_t kMost = 1 << 20;
    const uint32_t length = Number32();
    if (length > kMost) mIsOk = false;
    std::string text = Bytes(mIsOk ? length : 0);
    while (text.ends_with('\0')) text.pop_back();
    return text;
  }

 private:
  platform::ByteSource& mSource;
  uint64_t mAt;
  bool mIsOk = true;
};

// Adds the fonts of a text layer: (text "...") (font "Sans Bold"), and with spans (markup "<span font=\"...\">").
void TakeTextLayer(std::string_view text, TextLayers& layers) {
  const auto quoted = [&](size_t at, const char* end) { return std::string(text.substr(at, text.find(end, at) - at)); };
  constexpr std::string_view kFont = "(font \"", kSpan = "font=\\\"";
  if (const size_t at = text.find(kFont); at != std::string_view::npos) {
    layers.Add(quoted(at + kFont.size(), "\""));
  }
  for (size_t at = text.find(kSpan); at != std::string_view::npos; at = text.find(kSpan, at + 1)) {
    layers.Add(quoted(at + kSpan.size(), "\\\""));
  }
}

void ReadParasites(Cursor& cursor, uint64_t end, TextLayers& layers) {
  while (cursor.Ok() && cursor.At() < end) {
    const std::string name = cursor.CountedText();
    cursor.Number32();  // flags
    const uint32_t size = cursor.Number32();
    if (name == "gimp-text-layer") {
      TakeTextLayer(cursor.Bytes(size), layers);
    } else {
      cursor.Skip(size);
    }
  }
}

// Skips properties, but reads those that contain text layers. Returns false if they are damaged.
bool ReadProperties(Cursor& cursor, TextLayers* layers) {
  constexpr uint32_t kEnd = 0, kParasites = 21;
  while (cursor.Ok()) {
    const uint32_t kind = cursor.Number32();
    const uint32_t size = cursor.Number32();
    if (kind == kEnd) return cursor.Ok();
    const uint64_t end = cursor.At() + size;
    if (kind == kParasites && layers) ReadParasites(cursor, end, *layers);
    if (cursor.At() > end) return false;
    cursor.Skip(end - cursor.At());
  }
  return false;
}

}  // namespace

std::string ReadFontsOfXCF(platform::ByteSource& source, StyledFonts& fonts) {
  constexpr size_t kMagicSize = 9, kVersionSize = 5;
  constexpr int kFirstWithPrecision = 4, kFirstWithLargeOffsets = 11;
  constexpr size_t kMostLayers = 100'000;
  Cursor cursor(source, kMagicSize);
  const std::string version = cursor.Bytes(kVersionSize);
  const int number = version.starts_with('v') ? std::atoi(version.c_str() + 1) : 0;  // "file" is version 0
  cursor.Skip(3 * sizeof(uint32_t));
  if (number >= kFirstWithPrecision) cursor.Number32();
  if (!ReadProperties(cursor, nullptr)) return kDamaged;
  const size_t offsetSize = number >= kFirstWithLargeOffsets ? 8 : 4;
  std::vector<uint64_t> layers;
  for (uint64_t at = cursor.Number(offsetSize); at != 0 && layers.size() < kMostLayers;
       at = cursor.Number(offsetSize)) {
    layers.push_back(at);
  }
  TextLayers texts{fonts};
  for (const uint64_t at : layers) {
    Cursor layer(source, at);
    layer.Skip(3 * sizeof(uint32_t));
    layer.CountedText();
    if (!ReadProperties(layer, &texts)) return kDamaged;
  }
  if (!cursor.Ok()) return kDamaged;
  return texts.hasDamagedName ? kDamagedName : "";
}
