#include "agent/fonts/FontTraits.h"

#include FT_MULTIPLE_MASTERS_H
#include FT_TRUETYPE_TABLES_H
#include FT_TYPE1_TABLES_H

#include <algorithm>
#include <iterator>
#include <string_view>

namespace agent {

namespace {

// The class in sFamilyClass of the OS/2 table.
FontDesign DesignOfFamilyClass(FT_Short familyClass) {
  switch (familyClass >> 8) {
    case 1:
    case 2:
    case 3:
    case 4:
    case 7: return FontDesign::kSerif;
    case 5: return FontDesign::kSlab;
    case 8: return FontDesign::kSans;
    case 9: return FontDesign::kDecorative;
    case 10: return FontDesign::kScript;
    case 12: return FontDesign::kSymbol;
    default: return FontDesign::kUnknown;
  }
}

// Weights by the words of Type 1 fonts. The longer words come first, because they contain the shorter ones.
uint16_t WeightOfWord(std::string_view word) {
  struct Row {
    std::string_view word;
    uint16_t weight;
  };
  static constexpr Row kRows[] = {
      {"extralight", 200}, {"ultralight", 200}, {"semilight", 350}, {"demilight", 350}, {"extrabold", 800},
      {"ultrabold", 800},  {"semibold", 600},   {"demibold", 600},  {"demi", 600},      {"thin", 100},
      {"light", 300},      {"medium", 500},     {"bold", 700},      {"black", 900},     {"heavy", 900},
  };
  for (const Row& row : kRows) {
    const auto found = std::search(word.begin(), word.end(), row.word.begin(), row.word.end(),
                                   [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + 32 : a) == b; });
    if (found != word.end()) return row.weight;
  }
  return FontTraits().weight;
}

void AddTraitsOfOS2(const TT_OS2& os2, FontTraits& traits) {
  constexpr FT_UShort kItalicBit = 1, kObliqueBit = 1 << 9;
  if (os2.usWeightClass >= 1 && os2.usWeightClass <= 1000) traits.weight = os2.usWeightClass;
  // Old fonts count from 1 to 9 here.
  if (traits.weight < 10) traits.weight = static_cast<uint16_t>(traits.weight * 100);
  if (os2.usWidthClass >= 1 && os2.usWidthClass <= 9) traits.width = static_cast<uint8_t>(os2.usWidthClass);
  if (os2.fsSelection & (kItalicBit | kObliqueBit)) traits.isItalic = true;
  platform::Panose panose;
  std::copy(std::begin(os2.panose), std::end(os2.panose), panose.begin());
  traits.design = platform::DesignOfPanose(panose);
  if (traits.design == FontDesign::kUnknown) traits.design = DesignOfFamilyClass(os2.sFamilyClass);
}

}  // namespace

FontTraits TraitsOf(FT_Face face) {
  FontTraits traits;
  traits.isItalic = (face->style_flags & FT_STYLE_FLAG_ITALIC) != 0;
  traits.isMonospaced = FT_IS_FIXED_WIDTH(face) != 0;
  traits.isVariable = FT_HAS_MULTIPLE_MASTERS(face) != 0;
  traits.isColoured = FT_HAS_COLOR(face) != 0;
  const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
  if (os2 && os2->version != 0xFFFF) {
    AddTraitsOfOS2(*os2, traits);
    return traits;
  }
  PS_FontInfoRec info{};
  if (FT_Get_PS_Font_Info(face, &info) == 0 && info.weight) {
    traits.weight = WeightOfWord(info.weight);
  } else if (face->style_flags & FT_STYLE_FLAG_BOLD) {
    traits.weight = 700;
  }
  return traits;
}

}  // namespace agent
