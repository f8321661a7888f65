// The scripts and languages that a face has letters for.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <bitset>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "agent/fonts/SharedText.h"

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

// The same in eight bytes. Most faces share theirs with others.
class PackedCoverage {
 public:
  PackedCoverage() = default;
  PackedCoverage(const FontCoverage& coverage);
  // From their texts.
  PackedCoverage(SharedText scripts, SharedText languages) : scripts_(scripts), languages_(languages) {}
  FontCoverage Unpacked() const;
  SharedText Scripts() const { return scripts_; }
  SharedText Languages() const { return languages_; }
  bool operator==(const PackedCoverage&) const = default;

 private:
  SharedText scripts_, languages_;
};

// Thread-safe. A script counts as covered if the face has the letter that stands for it in Unicode's data;
// a language, if the face has all letters that it needs in ordinary text. Of languages with more than kMostLetters it
// looks at some of these only.
class CoverageReader {
 public:
  // Made when it is first needed, which takes some 30 ms.
  static const CoverageReader& Shared();
  CoverageReader(const CoverageReader&) = delete;
  CoverageReader& operator=(const CoverageReader&) = delete;

  FontCoverage Read(FT_Face face) const;

  static constexpr size_t kMostLetters = 300;

 private:
  CoverageReader();
  struct Letter {
    char32_t character;
    FontCoverage needs;  // the scripts and languages that cannot do without it
  };
  std::vector<Letter> letters_;
  FontCoverage all_;
};

}  // namespace agent
