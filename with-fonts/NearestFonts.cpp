#include "with-fonts/NearestFonts.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <tuple>

#include "agent/client/AgentConnection.h"
#include "agent/include/AgentCalls.h"
#include "platform/Folders.h"

namespace with_fonts {

namespace {

namespace calls = agent_protocol::calls;
using Description = calls::DescribeFonts::Font;
using Distance = std::tuple<int, int, std::string>;

constexpr size_t kMost = 3;
constexpr size_t kMostDescribed = 500;
constexpr size_t kShortestWord = 4;  // letters; shorter ones are in too many names

// Separates the words of a PostScript name, "NimbusSans-BoldItalic".
std::string WithBlanks(const std::string& name) {
  std::string text;
  for (size_t i = 0; i < name.size(); ++i) {
    const auto letter = static_cast<unsigned char>(name[i]);
    const bool isStart = i > 0 && std::isupper(letter) && std::islower(static_cast<unsigned char>(name[i - 1]));
    if (isStart && !text.ends_with(' ')) text += ' ';
    text += letter == '-' || letter == '_' ? ' ' : name[i];
  }
  return text;
}

std::string RuleFor(const std::string& field, const std::string& part) {
  std::string rule = field + " ~ \"";
  for (const char c : part) {
    if (c == '"' || c == '\\') rule += '\\';
    rule += c;
  }
  return rule + "\"";
}

// The rules to try, the narrowest first.
std::vector<std::string> RulesFor(const docfonts::Font& missing, const FontStyle& style) {
  std::vector<std::string> rules;
  if (style.family.empty()) return rules;
  rules.push_back(RuleFor("family", style.family));
  const std::string nameOfFamily = missing.name.substr(0, missing.name.find('-'));
  if (!missing.style && nameOfFamily.size() >= kShortestWord) rules.push_back(RuleFor("name", nameOfFamily));
  const std::string word = style.family.substr(0, style.family.find(' '));
  if (word.size() >= kShortestWord && word != style.family) rules.push_back(RuleFor("family", word));
  return rules;
}

Distance DistanceOf(const FontStyle& style, const Description& font) {
  return {font.italic == style.isItalic ? 0 : 1, std::abs(static_cast<int>(font.weight) - style.weight),
          font.postscriptName};
}

}  // namespace

std::vector<std::string> NearestFonts(const docfonts::Font& missing) {
  std::vector<std::string> names;
  platform::Descriptor socket = agent_client::ReachAgent(platform::GetPlaces().runtime);
  if (!socket) return names;
  agent_client::AgentConnection agent(
      std::move(socket), [](const agent_client::Json&) {}, [] {});
  if (agent.Call<calls::Hello>({}).code != agent_protocol::kSuccess) return names;
  const FontStyle style = missing.style ? *missing.style : StyleOfName(WithBlanks(missing.name));
  for (const std::string& rule : RulesFor(missing, style)) {
    auto ids = agent.Call<calls::FindFonts>({rule}).result.fontIDs;
    if (ids.empty()) continue;
    if (ids.size() > kMostDescribed) ids.resize(kMostDescribed);
    auto fonts = agent.Call<calls::DescribeFonts>({std::move(ids)}).result.fonts;
    std::sort(fonts.begin(), fonts.end(),
              [&style](const auto& a, const auto& b) { return DistanceOf(style, a) < DistanceOf(style, b); });
    for (const Description& font : fonts) {
      const bool isListed = std::find(names.begin(), names.end(), font.postscriptName) != names.end();
      if (names.size() < kMost && !isListed) names.push_back(font.postscriptName);
    }
    break;
  }
  return names;
}

}  // namespace with_fonts
