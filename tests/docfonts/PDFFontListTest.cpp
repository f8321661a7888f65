// The fonts of PDFs of many producers, in each form of storage.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>

#include "Readers/XMPFontMetadata.h"
#include "docfonts/FontCollector.h"
#include "docfonts/RewrittenPDF.h"
#include "support/TempFolder.h"

namespace {

using Names = std::set<std::string>;

Names NamesOf(const docfonts::Report& report) {
  Names names;
  for (const docfonts::Font& font : report.fonts) names.insert(font.name);
  return names;
}

// What pdffonts lists for each file, without subset tags and unnamed fonts.
std::map<std::string, Names> ListedNames() {
  std::map<std::string, Names> listed = {
      {SOURCE_DIR "/samples/leaflet.pdf", {"NimbusRoman-Italic", "NimbusSans-Bold"}}};
  const std::string samples = SOURCE_DIR "/tests/readers/pdf/";
  std::ifstream file(samples + "names.txt");
  for (std::string line, font; std::getline(file, line);) {
    std::istringstream words(line);
    std::string name;
    words >> name;
    while (words >> font) listed[samples + name].insert(font);
  }
  return listed;
}

class PDFFontList : public testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_EQ(InitializeGlyphsureXMP(), 0); }
  static void TearDownTestSuite() { TerminateGlyphsureXMP(); }
  // Returns the file in another form.
  std::string Rewrite(const std::string& from, const char* name, PDFForm form) const {
    std::string path = folder / name;
    RewritePDF(from, path, form);
    return path;
  }
  // A document of one page; `objects` begin with number 4, `page` adds keys to its dictionary.
  std::string Make(const std::string& page, const std::string& objects) const {
    return folder.Write("made.pdf",
                        "%PDF-1.4\n1 0 obj\n<</Type/Catalog/Pages 2 0 R>>\nendobj\n"
                        "2 0 obj\n<</Type/Pages/Kids[3 0 R]/Count 1>>\nendobj\n"
                        "3 0 obj\n<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9] " +
                            page + ">>\nendobj\n" + objects + "trailer\n<</Root 1 0 R/Size 30>>\n%%EOF\n");
  }

  test_support::TempFolder folder;
};

TEST_F(PDFFontList, EveryFormOfADocumentNamesItsFonts) {
  const std::map<std::string, Names> listed = ListedNames();
  size_t count = 0;
  for (const auto& [path, names] : listed) {
    const std::string forms[] = {
        path,
        Rewrite(path, "streams.pdf", PDFForm::kObjectStreams),
        Rewrite(path, "linear.pdf", PDFForm::kLinear),
        Rewrite(path, "encrypted.pdf", PDFForm::kEncrypted),
    };
    for (const std::string& form : forms) {
      ++count;
      const docfonts::Report report = docfonts::CollectFonts(form);
      EXPECT_EQ(NamesOf(report), names) << path << " as " << form;
      EXPECT_TRUE(report.problems.empty()) << path << " as " << form << ": " << report.problems[0];
    }
  }
  EXPECT_GE(count, 60u);
  const docfonts::Report locked =
      docfonts::CollectFonts(Rewrite(SOURCE_DIR "/samples/leaflet.pdf", "locked.pdf", PDFForm::kLocked));
  EXPECT_THAT(locked.problems, testing::ElementsAre("it is encrypted with a password"));
}

// Each font is in another place of the page, and the references form circles.
TEST_F(PDFFontList, FindsFontsWhereverAPageUsesThem) {
  const std::string path = Make(
      "/Annots[8 0 R] /Resources 4 0 R",
      "4 0 obj\n<</Font 5 0 R/XObject<</F 6 0 R>>/Pattern<</P 7 0 R>>>>\nendobj\n"
      "5 0 obj\n<</A 10 0 R/B<</Type/Font/Subtype/Type1/BaseFont/Direct,Bold>>/C 11 0 R/D 12 0 R/E 16 0 R>>\nendobj\n"
      "6 0 obj\n<</Subtype/Form/Resources<</Font<</A 13 0 R>>/XObject<</F 6 0 R/G 7 0 R>>>>/Length 0>>stream\n\nendstream\nendobj\n"
      "7 0 obj\n<</PatternType 1/Resources<</Font<</A 14 0 R>>/Pattern<</P 7 0 R>>>>/Length 0>>stream\n\nendstream\nendobj\n"
      "8 0 obj\n<</Subtype/Widget/AS/On/AP<</N<</On 9 0 R>>>>>>\nendobj\n"
      "9 0 obj\n<</Subtype/Form/Resources<</Font<</A 15 0 R>>>>/Length 0>>stream\n\nendstream\nendobj\n"
      "10 0 obj\n<</Type/Font/Subtype/Type1/BaseFont/ABCDEF+Shared/FontDescriptor<</FontFile3 9 0 R>>>>\nendobj\n"
      "11 0 obj\n<</Type/Font/Subtype/Type0/BaseFont/Composite/DescendantFonts[<</Subtype/CIDFontType2>>]>>\nendobj\n"
      "12 0 obj\n<</Type/Font/Subtype/Type3>>\nendobj\n"
      "13 0 obj\n<</Type/Font/Subtype/TrueType/BaseFont/InForm>>\nendobj\n"
      "14 0 obj\n<</Type/Font/Subtype/Type1/BaseFont/In#20Pattern>>\nendobj\n"
      "15 0 obj\n<</Type/Font/Subtype/Type1/BaseFont/In#E4nnotation>>\nendobj\n"
      "16 0 obj\n<</Type/Font/Subtype/Type1/BaseFont 17 0 R>>\nendobj\n"
      "17 0 obj\n/Direct-Bold\nendobj\n");
  const docfonts::Report report = docfonts::CollectFonts(path);
  EXPECT_EQ(NamesOf(report),
            (Names{"Shared", "Direct,Bold", "Direct-Bold", "Composite", "InForm", "In Pattern", "In#E4nnotation"}));
  EXPECT_THAT(report.problems, testing::ElementsAre("it is damaged, so fonts may be missing")) << "it has no table";
  for (const docfonts::Font& font : report.fonts) {
    EXPECT_EQ(font.embedded, font.name == "Shared") << font.name;
    EXPECT_EQ(font.subset, font.name == "Shared" ? "ABCDEF" : "") << font.name;
    if (font.name == "Composite") {
      EXPECT_EQ(font.type, "CIDFontType2");
    }
  }
}

TEST_F(PDFFontList, EveryTruncationEndsWithAProblemOrAllFonts) {
  const std::string path = SOURCE_DIR "/tests/readers/pdf/mutool.pdf";
  const std::string whole = test_support::TempFolder::Content(path);
  const Names all = NamesOf(docfonts::CollectFonts(path));
  ASSERT_EQ(all.size(), 2u);
  for (size_t size = 8; size < whole.size(); ++size) {
    const docfonts::Report report = docfonts::CollectFonts(folder.Write("cut.pdf", whole.substr(0, size)));
    EXPECT_TRUE(!report.problems.empty() || NamesOf(report) == all) << size;
  }
}

}  // namespace
