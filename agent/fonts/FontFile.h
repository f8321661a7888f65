// Decides which files are fonts and lists their faces.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "agent/fonts/FontFace.h"

namespace agent {

enum class FontVerdict {
  kFont,      // at least one face is usable
  kNotAFont,  // another kind of file, which is no problem
  kBroken,    // a font without a usable face, a file that is only named like a font, or one that cannot be read
};

struct FontFileContent {
  FontVerdict verdict = FontVerdict::kNotAFont;
  std::vector<FontFace> faces;  // empty unless kFont
  std::string problem;          // for people, one line; never empty if kBroken. A font may have one, too: see `faces`
};

// Reads files with FreeType. Use an object on one thread only.
class FontFileReader {
 public:
  FontFileReader();
  ~FontFileReader();
  FontFileReader(const FontFileReader&) = delete;
  FontFileReader& operator=(const FontFileReader&) = delete;

  // Its content decides whether a file is a font, not its name. A file of more than 1 GiB is none, and so is anything
  // but a regular file.
  FontFileContent Read(const std::string& path) const;
  // The same for bytes in memory. fileName is the name without folders: it tells what the file claims to be, and is the
  // printer font of a Type 1 face.
  FontFileContent Parse(std::string_view bytes, const std::string& fileName) const;

 private:
  struct Library;  // FreeType's, which this header keeps from its includers
  std::unique_ptr<Library> library_;
};

}  // namespace agent
