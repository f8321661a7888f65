#include "with-fonts/DocumentFonts.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "platform/PlainText.h"

namespace with_fonts {

using Json = nlohmann::ordered_json;

namespace {

struct UseText {
  EUse use;
  const char* json;
  const char* line;    // after the number of fonts
  bool isComplete;     // the document gets this font
  bool isNameWorthIt;  // the line names the fonts
};

// In the order of the line.
constexpr UseText kUses[] = {
    {EUse::kActive, "active", "already active", true, false},
    {EUse::kEmbedded, "embedded", "in the document", true, false},
    {EUse::kActivated, "activated", "activated", true, false},
    {EUse::kFound, "found", "would be activated", true, true},
    {EUse::kRefused, "refused", "must not be activated", false, true},
    {EUse::kLeft, "left", "not activated", false, false},
    {EUse::kFailed, "failed", "activated but not visible to programs", false, true},
    {EUse::kMissing, "missing", "missing", false, true},
};

const UseText& TextOf(EUse use) {
  return *std::find_if(std::begin(kUses), std::end(kUses), [use](const UseText& text) { return text.use == use; });
}

std::string NamesOf(const std::vector<FontUse>& fonts, EUse use) {
  std::string names;
  for (const FontUse& font : fonts) {
    if (font.use != use) continue;
    names += (names.empty() ? ": " : ", ") + font.name;
    for (size_t i = 0; i < font.nearest.size(); ++i) names += (i == 0 ? " (nearest: " : ", ") + font.nearest[i];
    if (!font.nearest.empty()) names += ")";
  }
  return names;
}

}  // namespace

bool DocumentFonts::IsComplete() const {
  return problems.empty() &&
         std::all_of(fonts.begin(), fonts.end(), [](const FontUse& font) { return TextOf(font.use).isComplete; });
}

Json ToJson(const DocumentFonts& fonts) {
  Json list = Json::array();
  for (const FontUse& font : fonts.fonts) {
    list.push_back({{"name", font.name}, {"use", TextOf(font.use).json}});
    if (!font.file.empty()) list.back()["file"] = font.file;
    if (!font.nearest.empty()) list.back()["nearest"] = font.nearest;
  }
  return {{"document", fonts.document}, {"fonts", list}, {"problems", fonts.problems}};
}

DocumentFonts FromJson(const Json& object) {
  DocumentFonts fonts{object.at("document"), {}, object.at("problems")};
  for (const Json& entry : object.at("fonts")) {
    const std::string word = entry.at("use");
    const auto* use =
        std::find_if(std::begin(kUses), std::end(kUses), [&word](const UseText& text) { return text.json == word; });
    if (use == std::end(kUses)) throw std::invalid_argument("unknown use " + word);
    fonts.fonts.push_back(
        {entry.at("name"), use->use, entry.value("file", ""), entry.value("nearest", std::vector<std::string>())});
  }
  return fonts;
}

std::string ToLine(const DocumentFonts& fonts) {
  const size_t all = fonts.fonts.size();
  std::string line = fonts.document + ": " + (all == 0 ? "no fonts" : std::to_string(all) + " font");
  if (all > 1) line += "s";
  for (const UseText& text : kUses) {
    const auto count = std::count_if(fonts.fonts.begin(), fonts.fonts.end(),
                                     [&text](const FontUse& font) { return font.use == text.use; });
    if (count == 0) continue;
    line += ", " + std::to_string(count) + " " + text.line;
    if (text.isNameWorthIt) line += NamesOf(fonts.fonts, text.use);
  }
  return platform::OneLine(line) + "\n";
}

}  // namespace with_fonts
