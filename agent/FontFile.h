// Font files, read through FreeType: which are fonts, and the faces in them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "agent/FontFace.h"

namespace agent {

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
