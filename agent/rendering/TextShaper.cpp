#include "agent/rendering/TextShaper.h"

#include <hb-ft.h>
#include <hb.h>
#include <unicode/ubidi.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/uscript.h>

#include <algorithm>
#include <memory>
#include <new>
#include <sstream>

#include "agent/rendering/FreeWith.h"

namespace agent {

namespace {

using Buffer = std::unique_ptr<hb_buffer_t, FreeWith<hb_buffer_destroy>>;
using Font = std::unique_ptr<hb_font_t, FreeWith<hb_font_destroy>>;
using Bidi = std::unique_ptr<UBiDi, FreeWith<ubidi_close>>;

// Characters of one script in one direction.
struct Piece {
  int32_t start, length;
  UScriptCode script;
};

// Characters that all scripts share belong to the script before them, or, at the start, to the one after them.
std::vector<Piece> PiecesOf(const icu::UnicodeString& text, int32_t start, int32_t length) {
  std::vector<Piece> pieces;
  for (int32_t i = start; i < start + length; i = text.moveIndex32(i, 1)) {
    UErrorCode error = U_ZERO_ERROR;
    const UScriptCode script = uscript_getScript(text.char32At(i), &error);
    const bool isShared = script == USCRIPT_COMMON || script == USCRIPT_INHERITED;
    if (pieces.empty()) {
      pieces.push_back({start, 0, script});
    } else if (UScriptCode& current = pieces.back().script; !isShared && script != current) {
      const bool isFirstOfItsOwn = current == USCRIPT_COMMON || current == USCRIPT_INHERITED;
      if (isFirstOfItsOwn)
        current = script;
      else
        pieces.push_back({i, 0, script});
    }
    pieces.back().length = std::min(text.moveIndex32(i, 1), start + length) - pieces.back().start;
  }
  return pieces;
}

void ShapePiece(hb_font_t* font, const icu::UnicodeString& text, const Piece& piece, bool isRightToLeft,
                ShapedLine& line) {
  const Buffer buffer(hb_buffer_create());
  hb_buffer_add_utf16(buffer.get(), reinterpret_cast<const uint16_t*>(text.getBuffer()), text.length(),
                      static_cast<unsigned>(piece.start), piece.length);
  hb_buffer_set_direction(buffer.get(), isRightToLeft ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
  hb_buffer_set_script(buffer.get(), hb_script_from_string(uscript_getShortName(piece.script), -1));
  hb_buffer_guess_segment_properties(buffer.get());
  hb_shape(font, buffer.get(), nullptr, 0);
  if (!hb_buffer_allocation_successful(buffer.get())) throw std::bad_alloc();
  unsigned count = 0;
  const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer.get(), &count);
  const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer.get(), &count);
  for (unsigned i = 0; i < count; ++i) {
    if (infos[i].codepoint == 0) line.isComplete = false;
    line.glyphs.push_back({infos[i].codepoint, line.advance + positions[i].x_offset, positions[i].y_offset});
    line.advance += positions[i].x_advance;
  }
}

}  // namespace

ShapedLine ShapeLine(FT_Face face, const std::string& utf8) {
  const icu::UnicodeString text = icu::UnicodeString::fromUTF8(utf8);
  const Font font(hb_ft_font_create_referenced(face));
  UErrorCode error = U_ZERO_ERROR;
  const Bidi bidi(ubidi_open());
  if (bidi) ubidi_setPara(bidi.get(), text.getBuffer(), text.length(), UBIDI_LTR, nullptr, &error);
  const int32_t runs = bidi ? ubidi_countRuns(bidi.get(), &error) : 0;
  if (!bidi || U_FAILURE(error)) throw std::bad_alloc();
  ShapedLine line;
  for (int32_t i = 0; i < runs; ++i) {
    int32_t start = 0, length = 0;
    const bool isRightToLeft = ubidi_getVisualRun(bidi.get(), i, &start, &length) == UBIDI_RTL;
    std::vector<Piece> pieces = PiecesOf(text, start, length);
    if (isRightToLeft) std::reverse(pieces.begin(), pieces.end());
    for (const Piece& piece : pieces) ShapePiece(font.get(), text, piece, isRightToLeft, line);
  }
  return line;
}

bool IsWrittenDownwards(const std::string& utf8) {
  const icu::UnicodeString text = icu::UnicodeString::fromUTF8(utf8);
  bool hasLetters = false;
  for (const Piece& piece : PiecesOf(text, 0, text.length())) {
    if (piece.script == USCRIPT_COMMON) continue;
    if (piece.script != USCRIPT_MONGOLIAN && piece.script != USCRIPT_PHAGS_PA) return false;
    hasLetters = true;
  }
  return hasLetters;
}

ShapedLine ShapeColumns(FT_Face face, const std::string& utf8) {
  const FT_Pos ascent = face->size->metrics.ascender, descent = -face->size->metrics.descender;
  ShapedLine columns;
  std::istringstream words(utf8);
  for (std::string word; std::getline(words, word, ' ');) {
    if (word.empty()) continue;
    const ShapedLine column = ShapeLine(face, word);
    for (const PlacedGlyph& glyph : column.glyphs) {
      columns.glyphs.push_back({glyph.index, columns.advance + descent + glyph.y, -glyph.x});
    }
    columns.isComplete = columns.isComplete && column.isComplete;
    columns.advance += ascent + descent;
  }
  return columns;
}

}  // namespace agent
