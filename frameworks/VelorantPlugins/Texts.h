// The texts that the user reads, in the user's language. Main thread only.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace texts {

// The key is the English form or an identifier. "%@" and "%d" are filled in by whoever asks for the text, placeholders in
// square brackets here.
struct Text {
  const char* key;
  const char* text;
};

// A language without a text for a key falls back to English, which has a text for every key.
struct Language {
  const char* code;  // ISO 639
  std::span<const Text> texts;
};
extern const std::span<const Text> kEnglish, kFrench, kGerman, kItalian, kJapanese, kPortuguese, kSpanish;

// Takes the first of the user's languages that has texts; without a call it is English.
void ChooseLanguage();

// The text with its placeholders filled in; the key itself, unchanged, if there is no such text.
std::string Localized(std::string_view key);
// The text with its one "%@" or "%d" replaced.
std::string Formatted(std::string_view key, std::string_view argument);

}  // namespace texts
