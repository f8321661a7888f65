#include "agent/rendering/NameRenderer.h"

#include FT_OUTLINE_H

#include <algorithm>
#include <new>
#include <optional>
#include <stdexcept>

#include "agent/rendering/Canvas.h"
#include "agent/rendering/FallbackFont.h"
#include "agent/rendering/TextShaper.h"

namespace agent {

namespace {

constexpr int kMargin = 2;  // pixels at the left and right, in the picture for ordinary screens
constexpr FT_UInt kSmallestSize = kSmallestTextSize;

int Pixels(FT_Pos position) { return static_cast<int>((position + 32) >> 6); }

// The extent of what is drawn, in pixels from the start of the baseline, upwards.
struct Ink {
  FT_Pos left = 0, right = 0, bottom = 0, top = 0;
  bool IsEmpty() const { return left >= right || bottom >= top; }
  void Add(const FT_BBox& box, const PlacedGlyph& glyph) {
    if (box.xMin >= box.xMax || box.yMin >= box.yMax) return;
    const bool isFirst = IsEmpty();
    const FT_Pos l = (glyph.x + box.xMin) >> 6, r = (glyph.x + box.xMax + 63) >> 6;
    const FT_Pos b = (glyph.y + box.yMin) >> 6, t = (glyph.y + box.yMax + 63) >> 6;
    left = isFirst ? l : std::min(left, l);
    right = isFirst ? r : std::max(right, r);
    bottom = isFirst ? b : std::min(bottom, b);
    top = isFirst ? t : std::max(top, t);
  }
};

enum class Direction { kAlong, kDown };  // how the letters follow each other

struct Line {
  ShapedLine shaped;
  Ink ink;
  Direction direction = Direction::kAlong;
};

// From now on the face's glyphs are turned as a line in that direction needs them.
void Turn(FT_Face face, Direction direction) {
  FT_Matrix quarter = {0, 0x10000, -0x10000, 0};  // clockwise
  FT_Set_Transform(face, direction == Direction::kDown ? &quarter : nullptr, nullptr);
}

FT_Int32 LoadFlags(FT_Face face) { return FT_HAS_COLOR(face) ? FT_LOAD_COLOR : FT_LOAD_NO_BITMAP; }

Line ShapeAt(FT_Face face, const std::string& name, FT_UInt size, Direction direction) {
  if (FT_Set_Pixel_Sizes(face, 0, size) != 0) throw std::runtime_error("the font has no size for pictures");
  Line line;
  line.direction = direction;
  Turn(face, Direction::kAlong);  // as the shaper expects
  line.shaped = direction == Direction::kDown ? ShapeColumns(face, name) : ShapeLine(face, name);
  Turn(face, direction);
  for (const PlacedGlyph& glyph : line.shaped.glyphs) {
    if (FT_Load_Glyph(face, glyph.index, LoadFlags(face)) != 0)
      throw std::runtime_error("a glyph of the font is broken");
    FT_BBox box{};
    if (face->glyph->format == FT_GLYPH_FORMAT_OUTLINE) FT_Outline_Get_CBox(&face->glyph->outline, &box);
    line.ink.Add(box, glyph);
  }
  return line;
}

// Makes the text smaller until it fits the height. Returns nothing if it does not fit at the smallest size, or the font
// can't show the name; a fallback font may lack some characters, for which it shows a box of its own.
std::optional<Line> Fit(FT_Face face, const RenderRequest& request, int scale, bool isFallback, Direction direction,
                        FT_UInt smallest) {
  const auto height = static_cast<FT_Pos>(request.height) * scale;
  FT_UInt size = request.textSize * static_cast<FT_UInt>(scale);
  for (;;) {
    Line line = ShapeAt(face, request.name, size, direction);
    if ((!line.shaped.isComplete && !isFallback) || line.ink.IsEmpty()) return std::nullopt;
    const FT_Pos inkHeight = line.ink.top - line.ink.bottom;
    if (inkHeight <= height) return line;
    const auto smaller = static_cast<FT_UInt>(static_cast<FT_Pos>(size) * height / inkHeight);
    if (size <= smallest) return std::nullopt;
    size = std::clamp(smaller, smallest, size - 1);
  }
}

// Centres ascent and descent, but keeps all ink inside. Columns are centred as they are.
int Baseline(FT_Face face, const Line& line, int height) {
  const Ink& ink = line.ink;
  if (line.direction == Direction::kDown) return (height + static_cast<int>(ink.top + ink.bottom)) / 2;
  const int ascent = Pixels(face->size->metrics.ascender), descent = Pixels(-face->size->metrics.descender);
  const int centred = (height - (ascent + descent)) / 2 + ascent;
  return std::clamp(centred, static_cast<int>(ink.top), height + static_cast<int>(ink.bottom));
}

std::string Draw(FT_Face face, const Line& line, const RenderRequest& request, int scale, bool isMarked) {
  const int size = static_cast<int>(request.textSize) * scale, height = static_cast<int>(request.height) * scale;
  const int markWidth = isMarked ? size / 2 : 0, markHeight = std::min(size * 2 / 3, height);
  const int margin = kMargin * scale;
  const int start = margin + (isMarked ? markWidth + margin * 2 : 0) + std::max(0, static_cast<int>(-line.ink.left));
  const int end = start + std::max(Pixels(line.shaped.advance), static_cast<int>(line.ink.right)) + margin;
  const int width = std::clamp(end, 1, static_cast<int>(request.width) * scale);
  const int baseline = Baseline(face, line, height);
  Canvas canvas(static_cast<uint32_t>(width), static_cast<uint32_t>(height));
  if (isMarked) canvas.Frame(margin, (height - markHeight) / 2, margin + markWidth, (height + markHeight) / 2, scale);
  for (const PlacedGlyph& glyph : line.shaped.glyphs) {
    if (FT_Load_Glyph(face, glyph.index, LoadFlags(face)) != 0) continue;
    // The fraction of the position goes into the outline, so that letters keep their distances.
    if (face->glyph->format == FT_GLYPH_FORMAT_OUTLINE)
      FT_Outline_Translate(&face->glyph->outline, glyph.x & 63, glyph.y & 63);
    if (FT_Render_Glyph(face->glyph, FT_RENDER_MODE_NORMAL) != 0) continue;
    canvas.Draw(face->glyph->bitmap, start + static_cast<int>(glyph.x >> 6) + face->glyph->bitmap_left,
                baseline - static_cast<int>(glyph.y >> 6) - face->glyph->bitmap_top);
  }
  return canvas.PNG();
}

std::optional<Pictures> RenderIn(FT_Face face, const RenderRequest& request, bool isMarked, bool couldOpen) {
  Pictures pictures;
  pictures.couldOpen = couldOpen;
  pictures.isMarked = isMarked;
  // A column of less than half the size is harder to read than letters that lie on their side along the line.
  Direction direction = Direction::kDown;
  std::optional<Line> one;
  if (IsWrittenDownwards(request.name) && !FT_HAS_COLOR(face)) {
    one = Fit(face, request, 1, isMarked, direction, std::max(request.textSize / 2, kSmallestSize));
  }
  if (!one) {
    direction = Direction::kAlong;
    one = Fit(face, request, 1, isMarked, direction, kSmallestSize);
  }
  if (!one) return std::nullopt;
  pictures.png = Draw(face, *one, request, 1, isMarked);
  const auto two = Fit(face, request, 2, isMarked, direction, kSmallestSize);
  if (!two) return std::nullopt;
  pictures.png2x = Draw(face, *two, request, 2, isMarked);
  return pictures;
}

}  // namespace

NameRenderer::NameRenderer() {
  if (FT_Init_FreeType(&library_) != 0) throw std::bad_alloc();
}
NameRenderer::~NameRenderer() { FT_Done_FreeType(library_); }

NameRenderer::Face NameRenderer::Open(const std::string& path, uint32_t index) const {
  FT_Face face = nullptr;
  if (FT_New_Face(library_, path.c_str(), static_cast<FT_Long>(index), &face) != 0) return nullptr;
  return Face(face);
}

Pictures NameRenderer::Render(const RenderRequest& request, const std::string& path) {
  bool couldOpen = false;
  if (!request.inFallback) {
    const Face face = Open(path, request.faceIndex);
    couldOpen = face != nullptr;
    // A symbol font has pictures at the places of letters, so its name would not be readable.
    const bool hasText = face && FT_Select_Charmap(face.get(), FT_ENCODING_UNICODE) == 0;
    try {
      if (hasText) {
        if (auto pictures = RenderIn(face.get(), request, false, couldOpen)) return *pictures;
      }
    } catch (const std::runtime_error&) {
      // A broken glyph: the name is drawn below, with the mark.
    }
  }
  const auto fallback = FindFallbackFont(request.name, path);
  if (!fallback) throw std::runtime_error("there is no font to draw the name with");
  const Face face = Open(fallback->path, static_cast<uint32_t>(fallback->faceIndex));
  if (face) {
    if (auto pictures = RenderIn(face.get(), request, true, couldOpen)) return *pictures;
  }
  throw std::runtime_error("the name can't be drawn in " + fallback->path);
}

}  // namespace agent
