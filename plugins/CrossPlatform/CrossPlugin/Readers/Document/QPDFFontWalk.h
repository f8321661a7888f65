// Walks over the fonts of a PDF with libqpdf. Its headers stay in this unit and in QPDFByteSource, which are compiled
// as C++17: clang 14 rejects them as C++20. Not thread-safe.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/ByteSource.h"

// Texts are the PDF's bytes, in whatever encoding.
struct ListedPDFFont {
  std::string name;       // without the subset tag, never empty
  std::string subsetTag;  // six letters, or empty
  std::string type;       // as the PDF names it
  bool isEmbedded = false;
  // Of a font that is not embedded, what the PDF says about its looks; 0 and false for what it does not say.
  bool isMonospaced = false, isSerif = false, isScript = false, isItalic = false;
  int weight = 0;                              // as in CSS
  std::array<uint16_t, 26> letterWidths = {};  // of a to z, in thousandths of the em
};

// Passes each font that the pages use to `take`, once for each name. Appends one line for a person to `problems` for
// each reason why fonts may be missing. Throws nothing unless `take` does.
void WalkFontsOfPDF(platform::ByteSource& bytes, const std::function<void(const ListedPDFFont&)>& take,
                    std::vector<std::string>& problems);
