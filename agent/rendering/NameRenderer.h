// Draws the name of a font in the font itself, or, if that lacks a character of the name or is broken, in a fallback
// font with an empty box before it as a mark.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <memory>
#include <string>

#include "agent/rendering/RenderMessages.h"

namespace agent {

struct Pictures {
  std::string png, png2x;
  bool isMarked = false;
  bool couldOpen = false;  // the font itself was opened
};

// Not thread-safe. Works in a process of its own, because a broken font can make it loop or crash.
class NameRenderer {
 public:
  NameRenderer();  // throws std::bad_alloc
  ~NameRenderer();
  NameRenderer(const NameRenderer&) = delete;
  NameRenderer& operator=(const NameRenderer&) = delete;

  // Throws std::runtime_error with a line for people.
  Pictures Render(const RenderRequest& request, const std::string& path);

 private:
  struct Close {
    void operator()(FT_Face face) const { FT_Done_Face(face); }
  };
  using Face = std::unique_ptr<FT_FaceRec_, Close>;

  Face Open(const std::string& path, uint32_t index) const;
  FT_Library library_ = nullptr;
};

}  // namespace agent
