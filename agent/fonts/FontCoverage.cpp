#include "agent/fonts/FontCoverage.h"

#include <unicode/ulocdata.h>
#include <unicode/uniset.h>
#include <unicode/uscript.h>
#include <unicode/uset.h>

#include <algorithm>
#include <map>

namespace agent {

namespace {

struct CloseLocaleData {
  void operator()(ULocaleData* data) const { ulocdata_close(data); }
};

// The letters of a language in ordinary text, from Unicode's locale data.
icu::UnicodeSet LettersOf(const std::string& language) {
  icu::UnicodeSet letters;
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<ULocaleData, CloseLocaleData> data(ulocdata_open(language.c_str(), &error));
  if (data) ulocdata_getExemplarSet(data.get(), letters.toUSet(), 0, ULOCDATA_ES_STANDARD, &error);
  if (U_FAILURE(error)) letters.clear();
  letters.removeAllStrings();  // what letters make together
  return letters;
}

template <class Name>
std::vector<std::string> Codes(const std::bitset<FontCoverage::kMost>& set, const Name& nameOf) {
  std::vector<std::string> codes;
  for (size_t bit = 0; bit < set.size(); ++bit) {
    if (set[bit]) codes.emplace_back(nameOf(bit));
  }
  return codes;
}

}  // namespace

// The place of a language is stored in index.db. Who changes the list increases the version of the index.
const std::vector<std::string>& KnownLanguages() {
  static const std::vector<std::string> languages = {
      "af", "am", "ar", "as",      "az", "az_Cyrl", "be", "bg", "bn", "bo",  "br", "bs", "ca",      "ckb", "cs", "cy",
      "da", "de", "dz", "ee",      "el", "en",      "eo", "es", "et", "eu",  "fa", "fi", "fil",     "fo",  "fr", "fy",
      "ga", "gd", "gl", "gu",      "ha", "haw",     "he", "hi", "hr", "hsb", "hu", "hy", "id",      "ig",  "is", "it",
      "ja", "jv", "ka", "kk",      "km", "kn",      "ko", "ku", "ky", "lb",  "lo", "lt", "lv",      "mi",  "mk", "ml",
      "mn", "mr", "ms", "mt",      "my", "nb",      "ne", "nl", "nn", "om",  "or", "pa", "pa_Arab", "pl",  "ps", "pt",
      "qu", "rm", "ro", "ru",      "sd", "se",      "si", "sk", "sl", "so",  "sq", "sr", "sr_Latn", "sv",  "sw", "ta",
      "te", "tg", "th", "ti",      "tk", "to",      "tr", "tt", "ug", "uk",  "ur", "uz", "uz_Cyrl", "vi",  "wo", "xh",
      "yi", "yo", "zh", "zh_Hant", "zu"};
  return languages;
}

std::vector<std::string> ScriptCodes(const FontCoverage& coverage) {
  return Codes(coverage.scripts, [](size_t bit) { return uscript_getShortName(static_cast<UScriptCode>(bit)); });
}

std::vector<std::string> LanguageCodes(const FontCoverage& coverage) {
  return Codes(coverage.languages, [](size_t bit) { return KnownLanguages().at(bit); });
}

// Numbers of four bits, the lowest first, without those at the end that are 0.
std::string TextOfCoverage(const std::bitset<FontCoverage::kMost>& set) {
  std::string text;
  for (size_t bit = 0; bit < set.size(); bit += 4) {
    text += "0123456789abcdef"[set[bit] | set[bit + 1] << 1 | set[bit + 2] << 2 | set[bit + 3] << 3];
  }
  return text.substr(0, text.find_last_not_of('0') + 1);
}

std::bitset<FontCoverage::kMost> CoverageOfText(std::string_view text) {
  std::bitset<FontCoverage::kMost> set;
  constexpr std::string_view kDigits = "0123456789abcdef";
  for (size_t i = 0; i < text.size(); ++i) {
    const size_t value = kDigits.find(text[i]);
    if (value == std::string_view::npos || 4 * i >= set.size()) return {};
    for (size_t bit = 0; bit < 4; ++bit) set[4 * i + bit] = (value >> bit & 1) != 0;
  }
  return set;
}

PackedCoverage::PackedCoverage(const FontCoverage& coverage)
    : scripts_(TextOfCoverage(coverage.scripts)), languages_(TextOfCoverage(coverage.languages)) {}

FontCoverage PackedCoverage::Unpacked() const { return {CoverageOfText(scripts_), CoverageOfText(languages_)}; }

CoverageReader::CoverageReader() {
  std::map<char32_t, FontCoverage> needs;
  constexpr int kScripts = std::min(int{USCRIPT_CODE_LIMIT}, static_cast<int>(FontCoverage::kMost));
  for (int script = 0; script < kScripts; ++script) {
    const icu::UnicodeString sample = uscript_getSampleUnicodeString(static_cast<UScriptCode>(script));
    if (sample.isEmpty()) continue;
    needs[static_cast<char32_t>(sample.char32At(0))].scripts.set(static_cast<size_t>(script));
    all_.scripts.set(static_cast<size_t>(script));
  }
  for (size_t language = 0; language < KnownLanguages().size(); ++language) {
    const icu::UnicodeSet letters = LettersOf(KnownLanguages()[language]);
    if (letters.isEmpty()) continue;
    const auto count = static_cast<size_t>(letters.size());
    const size_t step = (count + kMostLetters - 1) / kMostLetters;
    for (size_t i = 0; i < count; i += step) {
      needs[static_cast<char32_t>(letters.charAt(static_cast<int32_t>(i)))].languages.set(language);
    }
    all_.languages.set(language);
  }
  for (const auto& [character, need] : needs) letters_.push_back({character, need});
}

const CoverageReader& CoverageReader::Shared() {
  static const CoverageReader sShared;
  return sShared;
}

FontCoverage CoverageReader::Read(FT_Face face) const {
  FontCoverage coverage;
  if (FT_Select_Charmap(face, FT_ENCODING_UNICODE) != 0) return coverage;
  coverage = all_;
  for (const Letter& letter : letters_) {
    // Most letters belong only to what an earlier letter has ruled out.
    const bool decides =
        (coverage.scripts & letter.needs.scripts).any() || (coverage.languages & letter.needs.languages).any();
    if (!decides) continue;
    if (FT_Get_Char_Index(face, letter.character) != 0) continue;
    coverage.scripts &= ~letter.needs.scripts;
    coverage.languages &= ~letter.needs.languages;
  }
  return coverage;
}

}  // namespace agent
