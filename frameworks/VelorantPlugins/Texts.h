// The texts for the user, in the user's language. Main thread only.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace texts {

// The key is the English text or an identifier. The caller fills in "%@" and "%d"; placeholders in square brackets are
// filled in here.
struct Text {
  const char* key;
  const char* text;
};

// A text that a language lacks falls back to English, which is complete.
struct Language {
  const char* code;  // ISO 639
  std::span<const Text> texts;
};
extern const std::span<const Text> kEnglish, kFrench, kGerman, kItalian, kJapanese, kPortuguese, kSpanish;

// Chooses the first of the user's languages that has texts. English before the first call.
void ChooseLanguage();

// Returns the text with its placeholders filled in, or the key itself if there is no such text.
std::string Localized(std::string_view key);
// The same with its one "%@" or "%d" replaced.
std::string Formatted(std::string_view key, std::string_view argument);

}  // namespace texts
