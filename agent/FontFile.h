// What a font file says of itself: its faces and what identifies each of them on any machine.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

struct FontFace {
  int32_t faceIndex = 0;       // place in a collection, else 0
  std::string postScriptName;  // never empty
  std::string family;
  std::string style;
  // "OpenType - PS": CFF outlines. "OpenType - TT": glyf outlines with one of the layout or signature tables GSUB,
  // GPOS, GDEF, BASE, JSTF, DSIG. "TrueType": glyf outlines without. "Postscript": Type 1. "PostScript - MM": Type 1
  // with axes.
  std::string kind;
  // Name 8; else a maker known from the notice; else the vendor of OS/2; else "--".
  std::string foundry;
  // Name 5 without a leading "Version " and what follows its first ";"; the /version of Type 1.
  std::string version;
  std::string printerFont;         // Type 1: the file's name
  uint32_t kerningChecksum = 0;    // 20 bits over kern and GPOS; 0 without either
  uint32_t checksum = 0;           // over the outlines, never 0
  uint32_t glyphsureChecksum = 0;  // over the outlines, never 0

  bool operator==(const FontFace&) const = default;
};

enum class FontVerdict { kFont, kNotAFont, kBroken };

struct FontFileContent {
  FontVerdict verdict = FontVerdict::kNotAFont;
  std::vector<FontFace> faces;
  std::string problem;  // one line; a collection may have faces and a problem
};

// Reads files through FreeType. One object serves one thread.
class FontFileReader {
 public:
  FontFileReader();
  ~FontFileReader();
  FontFileReader(const FontFileReader&) = delete;
  FontFileReader& operator=(const FontFileReader&) = delete;

  // A file is a font by its content. One that is named like a font and holds none is broken, any other is no font.
  FontFileContent Read(const std::string& path) const;
  FontFileContent Parse(std::string_view bytes, const std::string& fileName) const;

 private:
  struct Library;
  std::unique_ptr<Library> library_;
};

}  // namespace agent
