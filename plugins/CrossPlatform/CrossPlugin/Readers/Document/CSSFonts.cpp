#include "Readers/Document/CSSFonts.h"

#include <algorithm>
#include <charconv>

namespace {

std::string_view Trimmed(std::string_view text) {
  const size_t begin = text.find_first_not_of(" \t\r\n\f");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t\r\n\f") - begin + 1);
}

// The first family of a list, without quotes.
std::string FirstFamily(std::string_view value) {
  value = Trimmed(value);
  if (value.empty()) return {};
  const char quote = value.front();
  if (quote == '"' || quote == '\'') return std::string(value.substr(1, value.find(quote, 1) - 1));
  return std::string(Trimmed(value.substr(0, value.find(','))));
}

void ApplyWeight(std::string_view value, FontStyle& style) {
  constexpr int kBolderAt[][2] = {{350, 400}, {550, 700}, {1001, 900}};
  constexpr int kLighterAt[][2] = {{550, 100}, {750, 400}, {1001, 700}};
  const auto next = [&](const auto& table) {
    for (const auto& [limit, weight] : table) {
      if (style.weight < limit) return weight;
    }
    return style.weight;
  };
  int number = 0;
  if (value == "normal") {
    style.weight = FontStyle::kNormalWeight;
  } else if (value == "bold") {
    style.weight = FontStyle::kBoldWeight;
  } else if (value == "bolder") {
    style.weight = next(kBolderAt);
  } else if (value == "lighter") {
    style.weight = next(kLighterAt);
  } else if (std::from_chars(value.data(), value.data() + value.size(), number).ptr == value.data() + value.size() &&
             number >= 1 && number <= 1000) {
    style.weight = number;
  }
}

void ApplyStretch(std::string_view value, FontStyle& style) {
  constexpr std::pair<std::string_view, int> kWidths[] = {
      {"ultra-condensed", 50}, {"extra-condensed", 62}, {"condensed", 75},
      {"semi-condensed", 87},  {"normal", 100},         {"semi-expanded", 112},
      {"expanded", 125},       {"extra-expanded", 150}, {"ultra-expanded", 200}};
  for (const auto& [word, percent] : kWidths) {
    if (word == value) style.stretch = percent;
  }
}

// "italic bold 12px/1.5 'Family', serif": the size, which begins with a digit, is before the family.
void ApplyShorthand(std::string_view value, FontStyle& style) {
  style.weight = FontStyle::kNormalWeight;
  style.isItalic = false;
  style.stretch = FontStyle::kNormalStretch;
  while (!value.empty()) {
    value = Trimmed(value);
    const size_t end = std::min(value.find_first_of(" \t\r\n\f"), value.size());
    const std::string_view word = value.substr(0, end);
    value.remove_prefix(end);
    const bool isNumber = !word.empty() && (word.front() >= '0' && word.front() <= '9');
    const bool isSize = isNumber && word.find_first_not_of("0123456789") != std::string_view::npos;
    if (isSize || word == "medium" || word == "large" || word == "small") {
      style.family = FirstFamily(value);
      return;
    }
    if (word == "italic" || word == "oblique") style.isItalic = true;
    ApplyWeight(word, style);
    ApplyStretch(word, style);
  }
}

std::string WithoutComments(std::string_view text) {
  std::string plain;
  for (size_t at = 0; at < text.size();) {
    const size_t comment = text.find("/*", at);
    plain += text.substr(at, comment - at);
    if (comment == std::string_view::npos) break;
    const size_t end = text.find("*/", comment + 2);
    if (end == std::string_view::npos) break;
    at = end + 2;
  }
  return plain;
}

}  // namespace

void ApplyCSSProperty(std::string_view property, std::string_view value, FontStyle& style) {
  value = Trimmed(value.substr(0, value.find('!')));
  if (value.empty() || value == "inherit") return;
  if (property == "font-family") style.family = FirstFamily(value);
  if (property == "font-weight") ApplyWeight(value, style);
  if (property == "font-style") style.isItalic = value.starts_with("italic") || value.starts_with("oblique");
  if (property == "font-stretch") ApplyStretch(value, style);
  if (property == "font") ApplyShorthand(value, style);
}

void ApplyCSSDeclarations(std::string_view text, FontStyle& style) {
  while (!text.empty()) {
    const size_t end = std::min(text.find(';'), text.size());
    const std::string_view declaration = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    const size_t colon = declaration.find(':');
    if (colon == std::string_view::npos) continue;
    ApplyCSSProperty(Trimmed(declaration.substr(0, colon)), declaration.substr(colon + 1), style);
  }
}

void CSSStyleSheet::Append(std::string_view commented) {
  const std::string plain = WithoutComments(commented);
  std::string_view text = plain;
  for (;;) {
    const size_t open = text.find('{');
    const size_t close = text.find('}', open);
    if (close == std::string_view::npos) return;
    AppendRules(text.substr(0, open), text.substr(open + 1, close - open - 1));
    text.remove_prefix(close + 1);
  }
}

void CSSStyleSheet::AppendRules(std::string_view selectors, std::string_view declarations) {
  // Documents with a rule for each of many thousand elements name few fonts.
  if (declarations.find("font") == std::string_view::npos) return;
  if (Trimmed(selectors).starts_with("@font-face")) {
    FontStyle face;
    ApplyCSSDeclarations(declarations, face);
    mEmbedded.push_back(face.family);
    return;
  }
  while (!selectors.empty()) {
    const size_t comma = std::min(selectors.find(','), selectors.size());
    std::string_view selector = Trimmed(selectors.substr(0, comma));
    selectors.remove_prefix(std::min(comma + 1, selectors.size()));
    const size_t last = selector.find_last_of(" \t\r\n>+~");
    if (last != std::string_view::npos) selector.remove_prefix(last + 1);
    Rule rule;
    rule.declarations = declarations;
    std::string* part = &rule.element;
    for (const char c : selector) {
      if (c == ':' || c == '[') break;
      if (c == '.' || c == '#') {
        part = c == '.' ? &rule.cssClass : &rule.id;
        part->clear();
      } else {
        *part += c;
      }
    }
    if (rule.element == "*") rule.element.clear();
    mRules.push_back(std::move(rule));
  }
}

void CSSStyleSheet::Apply(std::string_view element, std::string_view classes, std::string_view id,
                          FontStyle& style) const {
  const std::string spaced = " " + std::string(classes) + " ";
  const auto fits = [&](const Rule& rule) {
    return (rule.element.empty() || rule.element == element) && (rule.id.empty() || rule.id == id) &&
           (rule.cssClass.empty() || spaced.find(" " + rule.cssClass + " ") != std::string::npos);
  };
  // By specificity: elements, classes, IDs.
  for (const int round : {0, 1, 2}) {
    for (const Rule& rule : mRules) {
      const int specificity = !rule.id.empty() ? 2 : !rule.cssClass.empty() ? 1 : 0;
      if (specificity == round && fits(rule)) ApplyCSSDeclarations(rule.declarations, style);
    }
  }
}
