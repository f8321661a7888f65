// Reads font files with FreeType: decides which files are fonts and lists their faces.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "agent/fonts/FontFace.h"

namespace agent {

enum class FontVerdict { kFont, kNotAFont, kBroken };

struct FontFileContent {
  FontVerdict verdict = FontVerdict::kNotAFont;
  std::vector<FontFace> faces;
  std::string problem;  // one line; a collection may have faces and a problem
};

// Reads files with FreeType. Use an object on one thread only.
class FontFileReader {
 public:
  FontFileReader();
  ~FontFileReader();
  FontFileReader(const FontFileReader&) = delete;
  FontFileReader& operator=(const FontFileReader&) = delete;

  // The content decides whether a file is a font. A file that is named like a font but is not one is broken; any other
  // file is not a font.
  FontFileContent Read(const std::string& path) const;
  FontFileContent Parse(std::string_view bytes, const std::string& fileName) const;

 private:
  struct Library;
  std::unique_ptr<Library> library_;
};

}  // namespace agent
