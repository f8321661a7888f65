// A picture of text: black or coloured pixels on a transparent ground.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdint>
#include <string>
#include <vector>

namespace agent {

class Canvas {
 public:
  Canvas(uint32_t width, uint32_t height) : width_(width), height_(height), pixels_(size_t{4} * width * height) {}

  // Draws a glyph's bitmap with its top left corner at the position. What lies outside is cut off.
  void Draw(const FT_Bitmap& bitmap, int left, int top);
  // Draws the outline of a rectangle in grey.
  void Frame(int left, int top, int right, int bottom, int thickness);
  // Returns the picture as a PNG with red, green, blue and alpha. Throws std::runtime_error on failure.
  std::string PNG() const;

 private:
  struct Pixel {
    uint8_t red, green, blue, alpha;  // colours are multiplied by alpha
  };
  void Blend(int x, int y, Pixel over);

  uint32_t width_, height_;
  std::vector<uint8_t> pixels_;  // RGBA, colours multiplied by alpha
};

}  // namespace agent
