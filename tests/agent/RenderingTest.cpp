// Drawing names: the order of glyphs in scripts that run from right to left, names in columns, and names that a font lacks
// letters for.
#include <gmock/gmock.h>
#include <png.h>

#include <string>
#include <vector>

#include "agent/rendering/NameRenderer.h"
#include "agent/rendering/TextShaper.h"
#include "support/DebianFonts.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"
#include "support/TinyFonts.h"

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

// How much ink each column of pixels has, from the left, and each row, from the top; without those at the ends that have
// none.
struct Ink {
  explicit Ink(const std::string& bytes) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    EXPECT_TRUE(png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()));
    image.format = PNG_FORMAT_RGBA;
    std::vector<uint8_t> pixels(PNG_IMAGE_SIZE(image));
    EXPECT_TRUE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr));
    columns.resize(image.width);
    rows.resize(image.height);
    for (size_t i = 3; i < pixels.size(); i += 4) {
      columns[i / 4 % image.width] += pixels[i];
      rows[i / 4 / image.width] += pixels[i];
    }
    for (std::vector<int>* sums : {&columns, &rows}) {
      const auto hasInk = [](int sum) { return sum != 0; };
      sums->erase(std::find_if(sums->rbegin(), sums->rend(), hasInk).base(), sums->end());
      sums->erase(sums->begin(), std::find_if(sums->begin(), sums->end(), hasInk));
    }
  }
  std::vector<int> columns, rows;
};

MATCHER(IsAboutAsLarge, "") { return std::abs(std::get<0>(arg) - std::get<1>(arg)) <= 8; }

TEST(Names, WrittenDownwardsStandInColumnsWhileTheyCanBeRead) {
  const test_support::TempFolder folder;
  const std::string latin = folder.Write("latin.ttf", tiny_fonts::MakeFont({"Tiny", "Regular", 700}));
  const std::string mongolian =
      folder.Write("mongolian.ttf", tiny_fonts::MakeFont({"Tiny", "Regular", 700, {u'\u1820', u'\u1821'}}));
  agent::NameRenderer renderer;
  const auto draw = [&](const std::string& name, const std::string& path) {
    agent::Pictures pictures = renderer.Render({0, name, 14, 400, 30, false}, path);
    EXPECT_FALSE(pictures.isMarked) << name;
    return pictures;
  };
  const agent::Pictures line = draw("Aaa", latin), column = draw("ᠠᠡᠡ", mongolian);
  for (auto [along, down] : {std::pair{Ink(line.png), Ink(column.png)}, {Ink(line.png2x), Ink(column.png2x)}}) {
    EXPECT_THAT(down.rows, testing::Pointwise(IsAboutAsLarge(), along.columns));
    std::reverse(along.rows.begin(), along.rows.end());  // the letters' heads are on the right
    EXPECT_THAT(down.columns, testing::Pointwise(IsAboutAsLarge(), along.rows));
    EXPECT_GT(down.rows.size(), down.columns.size());
  }
  // Two words are two columns. The text is made smaller for a long word, but not too small to be read.
  const Ink one(column.png), two(draw("ᠠᠡᠡ ᠠᠡᠡ", mongolian).png), smaller(draw("ᠠᠡᠡᠠᠡ", mongolian).png);
  EXPECT_EQ(two.rows.size(), one.rows.size());
  EXPECT_EQ(two.columns.size(), one.columns.size() + 15);  // the height of a line, in whole pixels
  EXPECT_LT(smaller.columns.size(), one.columns.size());
  EXPECT_EQ(draw("ᠠᠡᠡᠡᠡᠡᠡᠡᠡ", mongolian).png, draw("Aaaaaaaaa", latin).png);
}

}  // namespace
