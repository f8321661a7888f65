// Drawing names: the order of glyphs in scripts that run from right to left, and names that a font lacks letters for.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "agent/rendering/NameRenderer.h"
#include "agent/rendering/TextShaper.h"
#include "support/DebianFonts.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"

namespace {

using testing::ElementsAreArray;

class Shaping : public testing::Test {
 protected:
  Shaping() {
    EXPECT_EQ(FT_Init_FreeType(&library_), 0);
    EXPECT_EQ(FT_New_Face(library_, (debian_fonts::kDejaVu + "DejaVuSans.ttf").c_str(), 0, &face_), 0);
    FT_Set_Pixel_Sizes(face_, 0, 14);
  }
  ~Shaping() override {
    FT_Done_Face(face_);
    FT_Done_FreeType(library_);
  }
  std::vector<FT_UInt> Glyphs(const std::u32string& text) const {
    std::vector<FT_UInt> glyphs;
    for (const char32_t c : text) glyphs.push_back(FT_Get_Char_Index(face_, c));
    return glyphs;
  }

  FT_Library library_ = nullptr;
  FT_Face face_ = nullptr;
};

TEST_F(Shaping, PutsGlyphsInTheOrderOfReading) {
  struct Row {
    const char* name;
    std::u32string fromLeft;
  };
  const Row rows[] = {
      {"Sans", U"Sans"},
      {"אבג", U"גבא"},
      {"אב Sans גד", U"בא Sans דג"},  // the line as a whole runs from left to right
      {"אב 12", U"12 בא"},
      {"Кириллица AB", U"Кириллица AB"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const agent::ShapedLine line = agent::ShapeLine(face_, row.name);
    std::vector<FT_UInt> glyphs;
    for (const agent::PlacedGlyph& glyph : line.glyphs) glyphs.push_back(glyph.index);
    EXPECT_THAT(glyphs, ElementsAreArray(Glyphs(row.fromLeft)));
    EXPECT_TRUE(line.isComplete);
  }
  EXPECT_FALSE(agent::ShapeLine(face_, "漢字").isComplete);
  // Arabic letters change their form within a word.
  EXPECT_NE(agent::ShapeLine(face_, "سسس").glyphs[0].index, agent::ShapeLine(face_, "سسس").glyphs[1].index);
}

TEST(Names, WithoutLettersInTheirFontAreMarked) {
  // Fallback fonts come from here, whatever this machine's own fonts are.
  const test_support::TempFolder folder;
  const test_support::ScopedVariable configuration("FONTCONFIG_FILE", folder.WriteFontsConf({debian_fonts::kDejaVu}));
  agent::NameRenderer renderer;
  agent::RenderRequest request{0, "Sans", 14, 400, 30, false};
  const std::string path = debian_fonts::kDejaVu + "DejaVuSans.ttf";
  EXPECT_FALSE(renderer.Render(request, path).isMarked);
  EXPECT_TRUE(renderer.Render(request, "/no/such/font.ttf").isMarked);
  request.name = "漢字";
  EXPECT_TRUE(renderer.Render(request, path).isMarked);
  request = {0, "Sans", 14, 400, 30, true};
  EXPECT_TRUE(renderer.Render(request, path).isMarked);
}

}  // namespace
