// Reads one face of a font file, with FreeType and from its tables.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <string>
#include <string_view>

#include "agent/fonts/FileReading.h"
#include "agent/fonts/FontFace.h"
#include "agent/fonts/SfntTables.h"

namespace agent {

// Use on one thread only.
class FreeTypeLibrary {
 public:
  FreeTypeLibrary();  // throws std::bad_alloc
  ~FreeTypeLibrary();
  FreeTypeLibrary(const FreeTypeLibrary&) = delete;
  FreeTypeLibrary& operator=(const FreeTypeLibrary&) = delete;
  FT_Library Get() const { return library_; }

 private:
  FT_Library library_ = nullptr;
};

// Returns false, with a line in `problem`, if the face cannot be used. Use one FileReading for all faces of a file.
bool ReadSfntFace(const FreeTypeLibrary& library, std::string_view bytes, const SfntTables& tables, int index,
                  FileReading& reading, FontFace& face, std::string& problem);
bool ReadType1Face(const FreeTypeLibrary& library, std::string_view bytes, const std::string& fileName, FontFace& face,
                   std::string& problem);

}  // namespace agent
