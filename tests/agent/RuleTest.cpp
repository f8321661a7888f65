// Rules over fonts: which fonts they match, and what they say about a mistake. Traits and coverage of real fonts.
#include <gmock/gmock.h>

#include <string>

#include "agent/fonts/FontFile.h"
#include "agent/fonts/FontRule.h"
#include "support/DebianFonts.h"

namespace {

using agent::Font;
using agent::FontRule;
using agent::RuleError;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

constexpr int64_t kDay = 86400;
constexpr int64_t kNow = 20000 * kDay + 100;  // 2024-10-04

// A bold condensed serif font for Latin and Cyrillic, added ten days ago.
Font Sample() {
  Font font;
  font.path = "/fonts/Garamond Pro.otf";
  font.fileSize = 300 << 10;
  font.added = kNow - 10 * kDay;
  font.face.family = "Garamond \"Pro\"";
  font.face.style = "Bold";
  font.face.postScriptName = "GaramondPro-Bold";
  font.face.kind = "OpenType - PS";
  font.face.foundry = "Éditions";
  font.face.traits = {700, 3, agent::FontDesign::kSerif, false, false, true, false};
  agent::FontCoverage coverage;
  coverage.scripts.set(25).set(8);  // Latn, Cyrl
  coverage.languages.set(
      static_cast<size_t>(std::find(agent::KnownLanguages().begin(), agent::KnownLanguages().end(), "cs") -
                          agent::KnownLanguages().begin()));
  font.face.coverage = coverage;
  return font;
}

// What no other font of this test is.
Font Opposite() {
  Font font = Sample();
  font.face.traits = {400, 5, agent::FontDesign::kSans, true, true, false, true};
  font.face.version = "Version 2.1";
  return font;
}

TEST(FontRules, MatchWhatTheySay) {
  for (const char* rule : {"italic", "monospaced", "coloured", "version ~ 2.1", "design = sans", "not variable"}) {
    EXPECT_TRUE(FontRule::Parse(rule).Matches({Opposite(), false, kNow})) << rule;
    EXPECT_FALSE(FontRule::Parse(rule).Matches({Sample(), false, kNow})) << rule;
  }
  const Font font = Sample();
  const char* const matching[] = {
      "family ~ garamond",
      "family = \"garamond \\\"pro\\\"\"",
      "name = garamondpro-bold",
      "foundry = éditions and kind = \"opentype - ps\"",
      "style != italic and path ~ pro.otf",
      "weight >= 600 and weight < 701",
      "width <= 3 and size = 300K and size > 1000",
      "design = serif and not design = sans",
      "script = Cyrl and script != Grek and language = cs",
      "variable and not italic",
      "active",
      "age = 10 and added < 2024-10-04 and added >= 2024-09-24",
      "italic or (weight = 700 and variable)",
      "weight = 1 or weight = 700 and width = 3",
      "not (weight = 1 or weight = 2)",
  };
  for (const char* rule : matching) {
    EXPECT_TRUE(FontRule::Parse(rule).Matches({font, true, kNow})) << rule;
    EXPECT_FALSE(FontRule::Parse("not (" + std::string(rule) + ")").Matches({font, true, kNow})) << rule;
  }
  EXPECT_FALSE(FontRule::Parse("italic and weight = 700 or monospaced").Matches({font, true, kNow}));
}

TEST(FontRules, MistakesAreExplained) {
  struct Row {
    std::string rule;
    const char* problem;
  };
  const Row rows[] = {
      {"", "field is expected at character 1"},
      {"weigth > 3", "no field 'weigth' at character 1"},
      {"weight", "operator is expected"},
      {"weight >", "value is expected"},
      {"weight ~ 3", "no operator '~'"},
      {"weight >> 3", "no operator '>>'"},
      {"weight > heavy", "compared with a number"},
      {"size > 3G", "300K or 2M"},
      {"added > 2026-02-30", "a day"},
      {"script = Latin1", "no script 'Latin1'"},
      {"language = xx", "no language 'xx'"},
      {"design = pretty", "no design 'pretty'"},
      {"family = \"open", "quote is not closed at character 10"},
      {"(italic", "')' is missing"},
      {"italic italic", "'and', 'or' or the end"},
      {"italic and", "field is expected"},
      {std::string(200, '('), "too many levels"},
      {std::string(5000, 'x'), "at most 4096 bytes"},
  };
  for (const Row& row : rows) {
    try {
      FontRule::Parse(row.rule);
      ADD_FAILURE() << row.rule << " was accepted";
    } catch (const RuleError& error) {
      EXPECT_THAT(error.what(), HasSubstr(row.problem)) << row.rule;
    }
  }
}

TEST(FontTraits, AreReadFromRealFonts) {
  const agent::FontFileReader reader;
  const auto faceOf = [&](const std::string& path) { return reader.Read(path).faces.at(0); };
  const agent::FontFace serif = faceOf(debian_fonts::kLiberation + "LiberationSerif-BoldItalic.ttf");
  EXPECT_EQ(serif.traits, (agent::FontTraits{700, 5, agent::FontDesign::kSerif, true, false, false, false}));
  EXPECT_TRUE(faceOf(debian_fonts::kLiberation + "LiberationMono-Regular.ttf").traits.isMonospaced);
  const agent::FontFace narrow = faceOf(debian_fonts::kType1 + "NimbusSans-Bold.t1");
  EXPECT_EQ(narrow.traits.weight, 700);
  const agent::FontFace sans = faceOf(debian_fonts::kDejaVu + "DejaVuSans.ttf");
  const agent::FontCoverage coverage = sans.coverage.Unpacked();
  EXPECT_THAT(agent::ScriptCodes(coverage),
              AllOf(IsSupersetOf({"Latn", "Cyrl", "Grek", "Arab"}), Not(Contains("Hani"))));
  EXPECT_THAT(agent::LanguageCodes(coverage), AllOf(IsSupersetOf({"de", "cs", "ru", "el", "vi"}), Not(Contains("ja"))));
  EXPECT_TRUE(agent::CoverageOfText("xyz").none());
}

}  // namespace
