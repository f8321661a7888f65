#include "platform/Language.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace platform {

namespace {

std::string_view Environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

std::string_view Locale() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (const std::string_view value = Environment(name); !value.empty()) return value;
  }
  return "";
}

// Converts "de_AT.UTF-8@euro" to "de"; "C", "POSIX" and anything that is not a language to an empty string.
std::string LanguageOf(std::string_view locale) {
  std::string language(locale.substr(0, locale.find_first_of("_.@-")));
  for (char& c : language) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  const bool isLetters = std::all_of(language.begin(), language.end(), [](char c) { return c >= 'a' && c <= 'z'; });
  return isLetters && (language.size() == 2 || language.size() == 3) ? language : "";
}

void AddLanguage(std::vector<std::string>& languages, std::string_view locale) {
  const std::string language = LanguageOf(locale);
  if (language.empty() || std::find(languages.begin(), languages.end(), language) != languages.end()) return;
  languages.push_back(language);
}

}  // namespace

std::vector<std::string> PreferredLanguages() {
  std::vector<std::string> languages;
  const std::string_view locale = Locale();
  if (LanguageOf(locale).empty()) return languages;
  for (std::string_view list = Environment("LANGUAGE"); !list.empty();) {
    const size_t colon = list.find(':');
    AddLanguage(languages, list.substr(0, colon));
    list = colon == std::string_view::npos ? std::string_view() : list.substr(colon + 1);
  }
  AddLanguage(languages, locale);
  return languages;
}

}  // namespace platform
