// Unpacks web font files (WOFF, WOFF2) into plain ones. Use it only in a process that does nothing else: broken files
// can make the library loop or crash.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

struct UnpackError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class FontUnpacker {
 public:
  FontUnpacker();  // throws std::bad_alloc
  ~FontUnpacker();
  FontUnpacker(const FontUnpacker&) = delete;
  FontUnpacker& operator=(const FontUnpacker&) = delete;

  // Returns a TrueType or OpenType file for each face. Throws UnpackError, a line for people.
  std::vector<std::string> Unpack(std::string_view bytes) const;

 private:
  FT_Library library_ = nullptr;
};

}  // namespace agent
