// The scripts and languages that a face has letters for.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <bitset>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

struct FontCoverage {
  static constexpr size_t kMost = 256;
  std::bitset<kMost> scripts;    // by the numbers of ICU
  std::bitset<kMost> languages;  // by their place in KnownLanguages
  bool operator==(const FontCoverage&) const = default;
};

// ISO 639 codes with, where a language has several scripts, the script: "de", "sr_Latn".
const std::vector<std::string>& KnownLanguages();

// The codes of what is covered: "Cyrl", "Latn" (ISO 15924), and those of KnownLanguages.
std::vector<std::string> ScriptCodes(const FontCoverage& coverage);
std::vector<std::string> LanguageCodes(const FontCoverage& coverage);
// The text of a set for a database, and back. Text of another form gives an empty set.
std::string TextOfCoverage(const std::bitset<FontCoverage::kMost>& set);
std::bitset<FontCoverage::kMost> CoverageOfText(std::string_view text);

// Needs some 30 ms to construct. A script counts as covered if the face has the letter that stands for it in Unicode's data;
// a language, if the face has all letters that it needs in ordinary text. Of languages with more than kMostLetters it looks
// at some of these only.
class CoverageReader {
 public:
  CoverageReader();
  ~CoverageReader();
  CoverageReader(const CoverageReader&) = delete;
  CoverageReader& operator=(const CoverageReader&) = delete;

  FontCoverage Read(FT_Face face) const;

  static constexpr size_t kMostLetters = 300;

 private:
  struct Letter {
    char32_t character;
    FontCoverage needs;  // the scripts and languages that cannot do without it
  };
  std::vector<Letter> letters_;
  FontCoverage all_;
};

}  // namespace agent
