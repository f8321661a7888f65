// Documents of other programs, which name families and styles: each as the real program wrote it, and damaged ones.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "Readers/Document/ByteStream.h"
#include "Readers/Document/FontStyle.h"
#include "Readers/XMPFontMetadata.h"
#include "docfonts/FontCollector.h"
#include "platform/Files.h"
#include "support/TempFolder.h"

namespace {

const std::string kSamples = SOURCE_DIR "/tests/docfonts/samples/";

class ForeignFonts : public testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_EQ(InitializeGlyphsureXMP(), 0); }
  static void TearDownTestSuite() { TerminateGlyphsureXMP(); }

  // "kind: name, name; problem"
  static std::string Collect(const std::string& path) {
    const docfonts::Report report = docfonts::CollectFonts(path);
    std::string text = report.kind + ":";
    for (const docfonts::Font& font : report.fonts) {
      text += (text.ends_with(':') ? " " : ", ") + font.name + (font.embedded.value_or(false) ? " (embedded)" : "");
    }
    for (const std::string& problem : report.problems) text += "; " + problem;
    return text;
  }

  test_support::TempFolder folder_;
};

TEST(FontStyle, NamesBecomeStylesAndNamesAgain) {
  const struct {
    const char* name;
    FontStyle style;
    const char* again;
  } kRows[] = {
      {"DejaVu Sans", {"DejaVu Sans"}, "DejaVu Sans"},
      {"DejaVu Sans Bold Oblique 12", {"DejaVu Sans", 700, true}, "DejaVu Sans Bold Italic"},
      {"Nimbus Sans Narrow Semi-Bold Condensed",
       {"Nimbus Sans Narrow", 600, false, 75},
       "Nimbus Sans Narrow Condensed Semibold"},
      {"Noto Sans, Light", {"Noto Sans", 300}, "Noto Sans Light"},
      {"Times New Roman, serif", {"Times New Roman"}, "Times New Roman"},
      {"Family Bold, Italic 9", {"Family Bold", 400, true}, "Family Bold Italic"},
      {"Bold", {"Bold"}, "Bold"},
      {"", {}, ""},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(StyleOfName(row.name), row.style) << row.name;
    EXPECT_EQ(NameOf(row.style), row.again) << row.name;
  }
}

TEST_F(ForeignFonts, OfDocumentsThatTheRealProgramsWrote) {
  const struct {
    const char* file;
    const char* found;
  } kRows[] = {
      {"text.odt",
       "odt: DejaVu Sans, DejaVu Sans Mono Bold, Liberation Serif, Liberation Serif Italic, Nimbus Sans Bold"},
      {"text.docx",
       "docx: DejaVu Sans, DejaVu Sans Mono Bold, Liberation Serif, Liberation Serif Italic, Nimbus Sans Bold"},
      {"embedded.odt", "odt: Standard Symbols PS (embedded)"},
      {"embedded.docx", "docx: Standard Symbols PS (embedded)"},
      {"sheet.ods", "ods: DejaVu Serif Bold, Liberation Sans"},
      {"sheet.xlsx", "xlsx: Arial, DejaVu Serif Bold"},
      {"slide.odp", "odp: Liberation Sans, Nimbus Roman Italic"},
      {"slide.pptx", "pptx: Arial, Nimbus Roman Italic"},
      // As LibreOffice embeds them when it exports the slides.
      {"inherited.pptx",
       "pptx: C059 Bold, DejaVu Sans Mono, DejaVu Serif, Liberation Sans, Nimbus Mono PS, Nimbus Roman, "
       "Nimbus Sans Narrow, P052, URW Bookman Italic, Z003"},
      {"image.xcf", "xcf: DejaVu Sans Bold Italic, Nimbus Roman"},
      {"layout.sla", "sla: DejaVu Sans, DejaVu Serif Bold, Nimbus Sans Italic"},
      {"layout.sla.gz", "sla: DejaVu Sans, DejaVu Serif Bold, Nimbus Sans Italic"},
      {"image.kra", "kra: Liberation Sans Narrow, Liberation Sans Narrow Bold, Nimbus Sans Condensed"},
      {"drawing.svg",
       "svg: DejaVu Serif Bold Italic, Liberation Sans Narrow, Liberation Sans Narrow Bold, Nimbus Sans Condensed"},
      {"drawing.svgz",
       "svg: DejaVu Serif Bold Italic, Liberation Sans Narrow, Liberation Sans Narrow Bold, Nimbus Sans Condensed"},
      {"layout.idml", "idml: NimbusSans-Bold"},
  };
  for (const auto& row : kRows) EXPECT_EQ(Collect(kSamples + row.file), row.found) << row.file;
}

TEST_F(ForeignFonts, LookAsTheDocumentSays) {
  const struct {
    const char* family;
    const char* pitch;
    const char* panose;
    const char* look;
  } kRows[] = {
      {"roman", "variable", "", "serif 0"},
      {"modern", "fixed", "", "unknown 1"},
      {"auto", "default", "", "unknown"},
      // PANOSE first: Liberation Mono, and a font that says nothing of its serifs.
      {"swiss", "variable", "02070409020205020404", "slab 1"},
      {"swiss", "", "2 0 5 3 0 0 0 0 0 0", "sans 0"},
      {"script", "", "0207040902020502040", "script"},
      {"script", "", "02 7040902020502040x", "script"},
  };
  for (const auto& row : kRows) {
    const FontLook look = LookOf(row.family, row.pitch, row.panose);
    std::string text(WordOf(look.design));
    if (look.isMonospaced) text += *look.isMonospaced ? " 1" : " 0";
    EXPECT_EQ(text, row.look) << row.family << row.panose;
  }
  const auto lookOf = [](const char* file, const std::string& name) {
    const docfonts::Report report = docfonts::CollectFonts(kSamples + file);
    const auto font = std::find_if(report.fonts.begin(), report.fonts.end(),
                                   [&name](const docfonts::Font& one) { return one.name == name; });
    return font == report.fonts.end() ? FontLook() : font->look;
  };
  EXPECT_EQ(lookOf("text.docx", "Liberation Serif"), LookOf("roman", "variable", ""));
  EXPECT_EQ(lookOf("text.odt", "DejaVu Sans"), LookOf("", "variable", ""));
}

TEST_F(ForeignFonts, OfAnImageComeFromWhatItsTextInherits) {
  const std::string start = "<svg xmlns='http://www.w3.org/2000/svg'>";
  const struct {
    std::string content, found;
  } kRows[] = {
      {"<text font-family='A'><tspan font-weight='bolder'>x</tspan> </text>", "svg: A Bold"},
      {"<g style=\"font:italic 600 10px 'B C',serif\"><text>x</text></g>", "svg: B C Semibold Italic"},
      {"<style>.a{font-family:A}#i{font-family:I}text.a{font-weight:bold}</style><text class='b a' id='i'>x</text>",
       "svg: I Bold"},
      {"<style>/* text{font-family:No} */ @font-face{font-family:E;src:url(data:x)} text{font-family:E!important}</style>"
       "<text>x</text>",
       "svg: E (embedded)"},
      {"<text font-family='A'><title>x</title></text><rect font-family='B'/>", "svg:"},
      {"<text font-family='monospace'>x</text>", "svg:"},
      {"<text font-family='A'>x</text>" + std::string(5000, ' ') + "<broken", "svg: A; its text is no well-formed XML"},
  };
  for (const auto& row : kRows) {
    const bool isBroken = row.content.ends_with("broken");
    const std::string path = folder_.Write("a.svg", start + row.content + (isBroken ? "" : "</svg>"));
    EXPECT_EQ(Collect(path), row.found) << row.content;
  }
}

TEST_F(ForeignFonts, HostileDocumentsAreRefused) {
  std::string bomb = "<!DOCTYPE svg [<!ENTITY a0 'xxxxxxxxxxxxxxxx'>";
  for (char level = '1'; level <= '9'; ++level) {
    const std::string inner = std::string("&a") + static_cast<char>(level - 1) + ";";
    std::string ten;
    for (int i = 0; i < 10; ++i) ten += inner;
    bomb += std::string("<!ENTITY a") + level + " '" + ten + "'>";
  }
  std::string deep = "<svg>";
  for (int i = 0; i < 10000; ++i) deep += "<g>";
  folder_.Write("secret", "Secret");
  const std::string external = "<!DOCTYPE svg [<!ENTITY e SYSTEM 'file://" + (folder_ / "secret") + "'>]>";
  const struct {
    const char* name;
    std::string bytes;
    const char* found;
  } kRows[] = {
      {"bomb.svg", bomb + "]><svg><text font-family='&a9;'>x</text></svg>", "svg:; its text is no well-formed XML"},
      {"deep.svg", deep, "svg:; its text is no well-formed XML"},
      {"external.svg", external + "<svg><text font-family='A'>&e;</text></svg>", "svg:"},
      {"cut.zip", "PK\3\4 word/document.xml", "docx:; its archive is damaged"},
      {"cut.xcf", "gimp xcf v011", "xcf:; its list of layers is damaged"},
  };
  for (const auto& row : kRows) EXPECT_EQ(Collect(folder_.Write(row.name, row.bytes)), row.found) << row.name;
}

// A few hundred kilobytes, in which more is packed than any document has.
TEST_F(ForeignFonts, ABombOfCompressedTextIsRefused) {
  const std::string path = folder_ / "bomb.svgz";
  const gzFile file = gzopen(path.c_str(), "wb1");
  gzputs(file, "<svg xmlns='http://www.w3.org/2000/svg'><text font-family='A'>x</text>");
  const std::string empty = "<!--" + std::string((1 << 20) - 11, ' ') + "--><g/>";
  for (uint64_t size = 0; size <= ByteStream::kMostBytes; size += empty.size()) gzwrite(file, empty.data(), 1 << 20);
  gzclose(file);
  EXPECT_EQ(Collect(path), "svg: A; its content is longer than 512 MiB");
}

// Cut anywhere, a document gives the fonts found so far or a problem, and never more fonts than the whole one.
TEST_F(ForeignFonts, TruncatedDocumentsEnd) {
  for (const auto& entry : std::filesystem::directory_iterator(kSamples)) {
    if (!entry.is_regular_file() || entry.path().extension() == "") continue;
    std::string bytes;
    ASSERT_FALSE(platform::ReadFile(entry.path().string(), bytes));
    const size_t whole = docfonts::CollectFonts(entry.path().string()).fonts.size();
    const size_t step = std::max<size_t>(1, bytes.size() / 12);
    for (size_t size = 0; size < bytes.size(); size += step) {
      const docfonts::Report cut = docfonts::CollectFonts(folder_.Write("cut", bytes.substr(0, size)));
      EXPECT_LE(cut.fonts.size(), whole) << entry.path() << " " << size;
    }
  }
}

}  // namespace
