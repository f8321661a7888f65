#include "Readers/Document/FontLook.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <sstream>

#include "Readers/Document/DocumentFontKeys.h"

using platform::Dictionary;
using platform::FontDesign;

namespace {

struct GenericFamily {
  std::string_view word;
  FontDesign design;
};

constexpr GenericFamily kGenericFamilies[] = {
    {"roman", FontDesign::kSerif},    {"swiss", FontDesign::kSans},
    {"modern", FontDesign::kUnknown},  // strokes of one width, with or without serifs
    {"script", FontDesign::kScript},  {"decorative", FontDesign::kDecorative},
};

std::optional<platform::Panose> PanoseOf(std::string_view text) {
  platform::Panose panose{};
  const bool isHexadecimal = text.size() == 2 * panose.size() && text.find(' ') == std::string_view::npos;
  std::istringstream numbers{std::string(text)};
  for (size_t i = 0; i < panose.size(); ++i) {
    std::string number;
    if (isHexadecimal) {
      number = text.substr(2 * i, 2);
    } else {
      numbers >> number;
    }
    char* end = nullptr;
    const unsigned long value = std::strtoul(number.c_str(), &end, isHexadecimal ? 16 : 10);
    if (number.empty() || *end || value > UINT8_MAX) return std::nullopt;
    panose[i] = static_cast<uint8_t>(value);
  }
  return panose;
}

std::optional<bool> Flag(const Dictionary& record, std::string_view key) {
  const platform::String value = record.GetString(key);
  return value ? std::optional(value.View() == "1") : std::nullopt;
}

void SetFlag(Dictionary& record, std::string_view key, std::optional<bool> flag) {
  if (flag) record.Set(key, *flag ? "1" : "0");
}

}  // namespace

void FontLook::Add(const FontLook& other) {
  if (design == FontDesign::kUnknown) design = other.design;
  if (!isMonospaced) isMonospaced = other.isMonospaced;
  if (!isItalic) isItalic = other.isItalic;
  if (weight == 0) weight = other.weight;
  if (letterWidths == LetterWidths{}) letterWidths = other.letterWidths;
}

FontLook LookOf(std::string_view genericFamily, std::string_view pitch, std::string_view panose) {
  FontLook look;
  const auto* family = std::find_if(std::begin(kGenericFamilies), std::end(kGenericFamilies),
                                    [&](const GenericFamily& one) { return one.word == genericFamily; });
  if (family != std::end(kGenericFamilies)) look.design = family->design;
  if (pitch == "fixed" || pitch == "variable") look.isMonospaced = pitch == "fixed";
  const auto numbers = PanoseOf(panose);
  if (!numbers) return look;
  if (const FontDesign design = platform::DesignOfPanose(*numbers); design != FontDesign::kUnknown)
    look.design = design;
  constexpr uint8_t kText = 2, kMonospaced = 9;
  const uint8_t proportion = (*numbers)[3];
  if ((*numbers)[0] == kText && proportion >= 2) look.isMonospaced = proportion == kMonospaced;
  return look;
}

std::string_view GenericFamilyOf(size_t number) {
  return number >= 1 && number <= std::size(kGenericFamilies) ? kGenericFamilies[number - 1].word : "";
}

std::string TextOf(const FontLook::LetterWidths& widths) {
  std::string text;
  if (widths == FontLook::LetterWidths{}) return text;
  for (const uint16_t width : widths) text += (text.empty() ? "" : " ") + std::to_string(width);
  return text;
}

FontLook::LetterWidths LetterWidthsOf(const std::string& text) {
  FontLook::LetterWidths widths{};
  std::istringstream numbers(text);
  for (uint16_t& width : widths) numbers >> width;
  return widths;
}

void SetLook(Dictionary record, const FontLook& look) {
  if (look.design != FontDesign::kUnknown) record.Set(kDocumentFont_DesignKey, std::string(WordOf(look.design)));
  SetFlag(record, kDocumentFont_MonospacedKey, look.isMonospaced);
  SetFlag(record, kDocumentFont_SlantedKey, look.isItalic);
  if (look.weight != 0) record.Set(kDocumentFont_BoldnessKey, std::to_string(look.weight));
  if (std::string text = TextOf(look.letterWidths); !text.empty()) record.Set(kDocumentFont_LetterWidthsKey, text);
}

FontLook LookOfRecord(const Dictionary& record) {
  return {platform::DesignOfWord(record.GetString(kDocumentFont_DesignKey).Text()),
          Flag(record, kDocumentFont_MonospacedKey), Flag(record, kDocumentFont_SlantedKey),
          std::atoi(record.GetString(kDocumentFont_BoldnessKey).Text().c_str()),
          LetterWidthsOf(record.GetString(kDocumentFont_LetterWidthsKey).Text())};
}
