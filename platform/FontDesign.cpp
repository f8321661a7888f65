#include "platform/FontDesign.h"

#include <algorithm>
#include <iterator>

namespace platform {

namespace {

// In the order of the enumeration.
constexpr std::string_view kWords[] = {"unknown", "serif", "slab", "sans", "script", "decorative", "symbol"};

}  // namespace

std::string_view WordOf(FontDesign design) { return kWords[static_cast<size_t>(design)]; }

FontDesign DesignOfWord(std::string_view word) {
  const auto* found = std::find(std::begin(kWords), std::end(kWords), word);
  return found == std::end(kWords) ? FontDesign::kUnknown : static_cast<FontDesign>(found - kWords);
}

// By the first two numbers: the kind of family, and, for Latin text, the kind of serif.
FontDesign DesignOfPanose(const Panose& panose) {
  constexpr uint8_t kText = 2, kHandwritten = 3, kDecorative = 4, kSymbol = 5;
  switch (panose[0]) {
    case kHandwritten: return FontDesign::kScript;
    case kDecorative: return FontDesign::kDecorative;
    case kSymbol: return FontDesign::kSymbol;
    case kText: break;
    default: return FontDesign::kUnknown;
  }
  const uint8_t serif = panose[1];
  if (serif >= 11 && serif <= 15) return FontDesign::kSans;
  constexpr uint8_t kSquare = 6, kThin = 7;
  if (serif == kSquare || serif == kThin) return FontDesign::kSlab;
  return serif >= 2 && serif <= 10 ? FontDesign::kSerif : FontDesign::kUnknown;
}

}  // namespace platform
