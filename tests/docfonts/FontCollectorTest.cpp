// Detecting the kind of a document, and merging what its readers find.
#include <gtest/gtest.h>

#include <cstdio>
#include <iterator>
#include <map>
#include <string>
#include <utility>

#include "Readers/XMPFontMetadata.h"
#include "docfonts/FontCollector.h"
#include "support/TempFolder.h"

namespace {

using namespace std::string_literals;

class FontCollector : public testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_EQ(InitializeGlyphsureXMP(), 0); }
  static void TearDownTestSuite() { TerminateGlyphsureXMP(); }

  // "kind: name=reader,reader name=..."
  static std::string Collect(const std::string& path) {
    const docfonts::Report report = docfonts::CollectFonts(path);
    std::string text = report.kind + ":";
    for (const docfonts::Font& font : report.fonts) {
      text += " " + font.name;
      const char* divider = "=";
      for (const std::string& reader : font.found) text += std::exchange(divider, ",") + reader;
    }
    return text;
  }

  test_support::TempFolder folder;
};

// A page with one font, in a file without compressed objects.
std::string PDF(const std::string& font, const std::string& behind) {
  const std::string objects[] = {"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                                 "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Resources<</Font<</A 4 0 R>>>>>>",
                                 "<</Type/Font/Subtype/TrueType/BaseFont/" + font + ">>", behind};
  std::string bytes = "%PDF-1.4\n", table;
  for (size_t i = 0; i < std::size(objects); ++i) {
    char entry[32];
    std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", bytes.size());
    table += entry;
    bytes += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
  }
  return bytes + "xref\n0 6\n0000000000 65535 f \n" + table + "trailer\n<</Size 6/Root 1 0 R>>\nstartxref\n" +
         std::to_string(bytes.size()) + "\n%%EOF\n";
}

TEST_F(FontCollector, KnowsDocumentsByTheirContent) {
  const std::string set = "/FontSet [ << /Name (A) >> ]", ps = "%%DocumentFonts: A\n%%EndComments\n";
  const std::string name = "<</Type/FontDescriptor/FontName/ABCDEF+A-Bold/Flags 4>>";
  const struct {
    const char* file;
    std::string bytes;
    const char* found;
  } kRows[] = {
      {"a.psd", "8BPS\0\1"s + set, "psd: A=scan"},
      {"a.jpg", "8BPS\0\2"s + set, "psb: A=scan"},
      {"a.indd", set, ": A=scan"},
      {"a.aep", "RIFX\0\0\0\0Egg!<< /99 /CoolTypeFont /0 << /0 (A) /2 1 >> >>"s, "aep: A=scan"},
      {"a.pdf", PDF("A,Bold", name), "pdf: A,Bold=pdf,parser"},
      {"a.ai", PDF("A,Bold", name), "ai: A,Bold=pdf,parser,scan"},
      {"a.eps", "%!PS-Adobe-3.0 EPSF-3.0\n" + ps, "eps: A=parser"},
      {"a.ai", "%!PS-Adobe-3.0\n" + ps + set, "ps: A=parser,scan"},
      {"a.eps", "\xC5\xD0\xD3\xC6\x20\0\0\0\1\0\0\0"s + std::string(20, '\0') + "%!\n" + ps, "eps: A=parser"},
      {"a.png", "\x89PNG\r\n"s, "png:"},
      {"a.txt", "", ":"},
  };
  for (const auto& row : kRows) EXPECT_EQ(Collect(folder.Write(row.file, row.bytes)), row.found) << row.file;
}

TEST_F(FontCollector, SaysOnceThatMetadataCannotBeRead) {
  std::string packet = "<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta xmlns:x='adobe:ns:meta/'>";
  for (int i = 0; i < 1001; ++i) packet += "<a>";
  packet += "</x:xmpmeta><?xpacket end='w'?>";
  packet.resize(packet.size() + packet.size() % 2, ' ');
  const auto sized = [](const std::string& bytes) {
    return "\0\0"s + static_cast<char>(bytes.size() >> 8) + static_cast<char>(bytes.size()) + bytes;
  };
  const std::string image = "8BPS\0\1\0\0\0\0\0\0\0\1\0\0\0\1\0\0\0\1\0\x08\0\1"s;
  const docfonts::Report report = docfonts::CollectFonts(
      folder.Write("a.psd", image + sized("") + sized("8BIM\x04\x24\0\0"s + sized(packet)) + sized("") + "\0\0\0"s));
  EXPECT_EQ(report.problems, std::vector<std::string>{"its XMP metadata cannot be read"});
}

TEST_F(FontCollector, TakesEachFactOfAFontWhereItIsKnown) {
  const std::string slug = "<</Type/FontDescriptor/FontName/x>>";
  const docfonts::Report report = docfonts::CollectFonts(
      folder.Write("a.pdf", PDF("ABCDEF+A-Bold/FontIdentifier<</Type/Glyphsure/Foundry (F)/Kind (K)>>", slug)));
  ASSERT_EQ(report.fonts.size(), 1u);
  const docfonts::Font& font = report.fonts[0];
  EXPECT_EQ(font.name, "A-Bold");
  EXPECT_EQ(font.subset, "ABCDEF");
  EXPECT_EQ(font.type, "TrueType");
  EXPECT_EQ(font.embedded, false);
  EXPECT_EQ(font.slug, (std::map<std::string, std::string>{{"FontKind", "K"}, {"Foundry", "F"}}));
}

}  // namespace
