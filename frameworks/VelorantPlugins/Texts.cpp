#include "frameworks/VelorantPlugins/Texts.h"

#include "frameworks/VelorantPlugins/HostDetails.h"
#include "platform/Language.h"

namespace texts {

namespace {

std::span<const Text> sChosen = kEnglish;

std::span<const Text> TextsOf(std::string_view code) {
  const Language languages[] = {{"en", kEnglish},    {"de", kGerman},  {"fr", kFrench},  {"es", kSpanish},
                                {"pt", kPortuguese}, {"it", kItalian}, {"ja", kJapanese}};
  for (const Language& language : languages) {
    if (language.code == code) return language.texts;
  }
  return {};
}

const char* Find(std::span<const Text> texts, std::string_view key) {
  for (const Text& text : texts) {
    if (text.key == key) return text.text;
  }
  return nullptr;
}

// Returns the text for a placeholder, which includes its brackets; null if it is unknown.
const std::string* ValueOf(std::string_view placeholder) {
  if (placeholder == "[FONT_MANAGER_MODIFIER]") return &HostDetails::Shared().fontManager;
  if (placeholder == "[host app]") return &HostDetails::Shared().hostApp;
  return nullptr;
}

// One pass, so that a value that looks like a placeholder is not replaced.
std::string FillPlaceholders(std::string_view text) {
  std::string filled;
  while (!text.empty()) {
    const size_t open = text.find('[');
    const size_t close = open == std::string_view::npos ? open : text.find(']', open);
    if (close == std::string_view::npos) break;
    filled.append(text.substr(0, open));
    const std::string_view placeholder = text.substr(open, close + 1 - open);
    if (const std::string* value = ValueOf(placeholder)) {
      filled.append(*value);
      text.remove_prefix(close + 1);
    } else {
      filled.push_back('[');
      text.remove_prefix(open + 1);
    }
  }
  return filled.append(text);
}

}  // namespace

void ChooseLanguage() {
  sChosen = kEnglish;
  for (const std::string& code : platform::PreferredLanguages()) {
    const std::span<const Text> texts = TextsOf(code);
    if (texts.empty()) continue;
    sChosen = texts;
    return;
  }
}

std::string Localized(std::string_view key) {
  const char* text = Find(sChosen, key);
  if (!text) text = Find(kEnglish, key);
  return text ? FillPlaceholders(text) : std::string(key);
}

std::string Formatted(std::string_view key, std::string_view argument) {
  std::string text = Localized(key);
  size_t place = text.find("%@");
  if (place == std::string::npos) place = text.find("%d");
  if (place != std::string::npos) text.replace(place, 2, argument);
  return text;
}

}  // namespace texts
