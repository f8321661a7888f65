// What a document says about how a font looks, besides its name and style. It finds fonts that can stand for one that
// is missing.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/FontDesign.h"
#include "platform/Value.h"

struct FontLook {
  static constexpr size_t kLetters = 26;
  // The widths of the letters a to z in thousandths of the em; 0 for an unknown one.
  using LetterWidths = std::array<uint16_t, kLetters>;

  platform::FontDesign design = platform::FontDesign::kUnknown;
  std::optional<bool> isMonospaced{};
  std::optional<bool> isItalic{};
  int weight = 0;  // as in FontStyle.h; 0 if not known
  LetterWidths letterWidths{};

  // Takes what is not known here.
  void Add(const FontLook& other);
  bool operator==(const FontLook&) const = default;
};

// Of documents that name a generic family ("roman", "swiss", "modern", "script", "decorative"), a pitch ("fixed",
// "variable") and a PANOSE, as twenty hexadecimal digits or ten decimal numbers with blanks. Unknown words and
// malformed numbers say nothing. What the PANOSE says comes before the other two.
FontLook LookOf(std::string_view genericFamily, std::string_view pitch, std::string_view panose);
// The same by the number of the generic family, from 1 for "roman" to 5.
std::string_view GenericFamilyOf(size_t number);

// Sets the keys of DocumentFontKeys.h for what is known. LookOfRecord reads them again.
void SetLook(platform::Dictionary record, const FontLook& look);
FontLook LookOfRecord(const platform::Dictionary& record);

std::string TextOf(const FontLook::LetterWidths& widths);  // decimal numbers with blanks; empty if none is known
FontLook::LetterWidths LetterWidthsOf(const std::string& text);
