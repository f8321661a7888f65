#include "agent/rendering/Canvas.h"

#include <png.h>

#include <stdexcept>

namespace agent {

namespace {

uint8_t Over(uint8_t over, uint8_t under, uint8_t alpha) {
  return static_cast<uint8_t>(over + under * (255 - alpha) / 255);
}

}  // namespace

void Canvas::Blend(int x, int y, Pixel over) {
  if (x < 0 || y < 0 || x >= static_cast<int>(width_) || y >= static_cast<int>(height_)) return;
  uint8_t* pixel = &pixels_[4 * (static_cast<size_t>(y) * width_ + static_cast<size_t>(x))];
  pixel[0] = Over(over.red, pixel[0], over.alpha);
  pixel[1] = Over(over.green, pixel[1], over.alpha);
  pixel[2] = Over(over.blue, pixel[2], over.alpha);
  pixel[3] = Over(over.alpha, pixel[3], over.alpha);
}

void Canvas::Draw(const FT_Bitmap& bitmap, int left, int top) {
  const bool isColoured = bitmap.pixel_mode == FT_PIXEL_MODE_BGRA;
  if (!isColoured && bitmap.pixel_mode != FT_PIXEL_MODE_GRAY) return;
  for (int y = 0; y < static_cast<int>(bitmap.rows); ++y) {
    const uint8_t* row = bitmap.buffer + static_cast<ptrdiff_t>(y) * bitmap.pitch;
    for (int x = 0; x < static_cast<int>(bitmap.width); ++x) {
      const uint8_t* bgra = row + 4 * static_cast<ptrdiff_t>(x);
      Blend(left + x, top + y, isColoured ? Pixel{bgra[2], bgra[1], bgra[0], bgra[3]} : Pixel{0, 0, 0, row[x]});
    }
  }
}

void Canvas::Frame(int left, int top, int right, int bottom, int thickness) {
  constexpr Pixel kGrey = {96, 96, 96, 192};
  for (int y = top; y < bottom; ++y) {
    for (int x = left; x < right; ++x) {
      const bool isInside =
          x >= left + thickness && x < right - thickness && y >= top + thickness && y < bottom - thickness;
      if (!isInside) Blend(x, y, kGrey);
    }
  }
}

std::string Canvas::PNG() const {
  std::vector<uint8_t> straight(pixels_);
  for (size_t i = 0; i < straight.size(); i += 4) {
    const uint8_t alpha = straight[i + 3];
    for (size_t c = i; alpha != 0 && c < i + 3; ++c) straight[c] = static_cast<uint8_t>(straight[c] * 255 / alpha);
  }
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = width_;
  image.height = height_;
  image.format = PNG_FORMAT_RGBA;
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::string bytes(size, '\0');
  if (!png_image_write_to_memory(&image, bytes.data(), &size, 0, straight.data(), 0, nullptr)) {
    throw std::runtime_error(std::string("a picture can't be written: ") + image.message);
  }
  bytes.resize(size);
  return bytes;
}

}  // namespace agent
