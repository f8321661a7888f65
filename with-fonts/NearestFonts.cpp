#include "with-fonts/NearestFonts.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <tuple>

#include "Readers/Document/StyleMatch.h"
#include "agent/client/AgentConnection.h"
#include "agent/include/AgentCalls.h"
#include "platform/Folders.h"
#include "platform/Fonts.h"
#include "with-fonts/LetterWidths.h"

namespace with_fonts {

namespace {

namespace calls = agent_protocol::calls;
using platform::FontDesign;
using Description = calls::DescribeFonts::Font;

constexpr size_t kMost = 3;
constexpr size_t kMostDescribed = 1000;
constexpr size_t kShortestWord = 4;  // letters; shorter ones are in too many names

// Separates the words of a PostScript name, "NimbusSans-BoldItalic", and leaves out what some foundries add to each
// name ("TimesNewRomanPS-BoldMT").
std::string WithBlanks(const std::string& name) {
  std::string text;
  const auto endWord = [&text] {
    for (const std::string addition : {"MT", "PS"}) {
      if (text.size() > addition.size() && text.ends_with(addition)) text.resize(text.size() - addition.size());
    }
    while (text.ends_with(' ')) text.pop_back();
  };
  for (size_t i = 0; i < name.size(); ++i) {
    const auto letter = static_cast<unsigned char>(name[i]);
    const bool isStart = i > 0 && std::isupper(letter) && std::islower(static_cast<unsigned char>(name[i - 1]));
    if (isStart && !text.ends_with(' ')) text += ' ';
    const bool isDivider = letter == '-' || letter == '_';
    if (isDivider) endWord();
    text += isDivider ? ' ' : name[i];
  }
  endWord();
  return text;
}

// What the document says about the font, in its name or otherwise.
FontStyle StyleOf(const docfonts::Font& font) {
  if (font.style) return *font.style;
  FontStyle style = StyleOfName(WithBlanks(font.name));
  if (style.weight == FontStyle::kNormalWeight && font.look.weight != 0) style.weight = font.look.weight;
  style.isItalic = style.isItalic || font.look.isItalic.value_or(false);
  return style;
}

// The document's own words, or else what the widths of letters show.
std::optional<bool> IsMonospaced(const FontLook& look) {
  constexpr ptrdiff_t kFewest = 3;
  if (look.isMonospaced) return look.isMonospaced;
  FontLook::LetterWidths widths = look.letterWidths;
  std::sort(widths.begin(), widths.end());
  const auto* const known = std::find_if(widths.begin(), widths.end(), [](uint16_t width) { return width != 0; });
  if (widths.end() - known < kFewest) return std::nullopt;
  return *known == widths.back();
}

std::string RuleFor(const std::string& field, const std::string& comparison, const std::string& part) {
  std::string rule = field + " " + comparison + " \"";
  for (const char c : part) {
    if (c == '"' || c == '\\') rule += '\\';
    rule += c;
  }
  return rule + "\"";
}

std::string RuleForAnyOf(const std::vector<std::string>& families) {
  std::string rule;
  for (const std::string& family : families) rule += (rule.empty() ? "" : " or ") + RuleFor("family", "=", family);
  return rule;
}

// Fonts that look the same, whatever their names. Empty if the document does not say how the font looks.
std::string RuleForLook(const FontLook& look, const FontStyle& style) {
  constexpr int kLightest = 100, kHeaviest = 1000, kNear = 150;
  const std::optional<bool> isMonospaced = IsMonospaced(look);
  std::string rule;
  if (isMonospaced.value_or(false)) {
    rule = "monospaced";
  } else if (look.design == FontDesign::kSerif || look.design == FontDesign::kSlab) {
    rule = "(design = serif or design = slab)";
  } else if (look.design != FontDesign::kUnknown) {
    rule = "design = " + std::string(WordOf(look.design));
  } else if (look.letterWidths == FontLook::LetterWidths{}) {
    return rule;
  }
  if (!isMonospaced.value_or(true)) rule += std::string(rule.empty() ? "" : " and ") + "not monospaced";
  if (!rule.empty()) rule += " and ";
  return rule + (style.isItalic ? "italic" : "not italic") +
         " and weight >= " + std::to_string(std::max(style.weight - kNear, kLightest)) +
         " and weight <= " + std::to_string(std::min(style.weight + kNear, kHeaviest));
}

// The rules to try, the narrowest first.
std::vector<std::string> RulesFor(const docfonts::Font& missing, const FontStyle& style) {
  if (style.family.empty()) return {};
  std::vector<std::string> rules = {RuleFor("family", "=", style.family),
                                    RuleForAnyOf(platform::InterchangeableFamilies(style.family)),
                                    RuleFor("family", "~", style.family)};
  const std::string nameOfFamily = missing.name.substr(0, missing.name.find('-'));
  if (!missing.style && nameOfFamily.size() >= kShortestWord) rules.push_back(RuleFor("name", "~", nameOfFamily));
  const std::string word = style.family.substr(0, style.family.find(' '));
  if (word.size() >= kShortestWord && word != style.family) rules.push_back(RuleFor("family", "~", word));
  rules.push_back(RuleForLook(missing.look, style));
  std::erase(rules, "");
  return rules;
}

int DesignDistance(FontDesign a, FontDesign b) {
  const auto hasSerifs = [](FontDesign design) { return design == FontDesign::kSerif || design == FontDesign::kSlab; };
  if (a == b) return 0;
  return a == FontDesign::kUnknown || b == FontDesign::kUnknown || (hasSerifs(a) && hasSerifs(b)) ? 1 : 2;
}

// The most important differences first.
using Distance = std::tuple<int, int, int, int, int, int, int, std::string>;

Distance DistanceOf(const FontLook& look, const FontStyle& style, const Description& font) {
  constexpr int kClass = 100, kUnmeasured = 1000;
  const int weight = std::abs(static_cast<int>(font.weight) - style.weight);
  const bool isDocumentMeasured = look.letterWidths != FontLook::LetterWidths{};
  int widths = 0;
  if (isDocumentMeasured) {
    widths = WidthDistance(look.letterWidths, MeasureLetters(font.path, static_cast<int>(font.faceIndex)));
    if (widths < 0) widths = kUnmeasured;
  }
  const std::optional<bool> isMonospaced = IsMonospaced(look);
  return {isMonospaced && *isMonospaced != font.monospaced ? 1 : 0,
          DesignDistance(look.design, platform::DesignOfWord(font.design)),
          font.italic == style.isItalic ? 0 : 1,
          weight / kClass,
          widths,
          std::abs(StretchOfWidthClass(font.width) - style.stretch),
          weight,
          font.postscriptName};
}

// The names of the nearest fonts, each once.
std::vector<std::string> Nearest(const std::vector<Description>& fonts, const FontLook& look, const FontStyle& style) {
  std::vector<Distance> distances;
  distances.reserve(fonts.size());
  for (const Description& font : fonts) distances.push_back(DistanceOf(look, style, font));
  std::sort(distances.begin(), distances.end());
  std::vector<std::string> names;
  for (const Distance& distance : distances) {
    const std::string& name = std::get<std::string>(distance);
    if (names.size() < kMost && std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  }
  return names;
}

}  // namespace

std::vector<std::string> NearestFonts(const docfonts::Font& missing) {
  platform::Descriptor socket = agent_client::ReachAgent(platform::GetPlaces().runtime);
  if (!socket) return {};
  agent_client::AgentConnection agent(
      std::move(socket), [](const agent_client::Json&) {}, [] {});
  if (agent.Call<calls::Hello>({}).code != agent_protocol::kSuccess) return {};
  const FontStyle style = StyleOf(missing);
  for (const std::string& rule : RulesFor(missing, style)) {
    auto ids = agent.Call<calls::FindFonts>({rule}).result.fontIDs;
    if (ids.empty()) continue;
    if (ids.size() > kMostDescribed) ids.resize(kMostDescribed);
    return Nearest(agent.Call<calls::DescribeFonts>({std::move(ids)}).result.fonts, missing.look, style);
  }
  return {};
}

}  // namespace with_fonts
