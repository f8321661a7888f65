// The fonts of PDFs in each way in which they can be stored, against another program that lists them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <memory>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>
#include <set>
#include <string>

#include "Readers/XMPFontMetadata.h"
#include "docfonts/FontCollector.h"
#include "support/TempFolder.h"

namespace {

using Names = std::set<std::string>;

Names NamesOf(const docfonts::Report& report) {
  Names names;
  for (const docfonts::Font& font : report.fonts) names.insert(font.name);
  return names;
}

// What pdffonts lists, without subset tags and without the fonts that have no name.
Names ListedByPdffonts(const std::string& path) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(("pdffonts '" + path + "' 2>/dev/null").c_str(), "r"), pclose);
  Names names;
  std::array<char, 4096> line;
  for (int number = 0; std::fgets(line.data(), line.size(), pipe.get()); ++number) {
    std::string name = std::string(line.data()).substr(0, std::string(line.data()).find(' '));
    if (name.size() > 6 && name[6] == '+') name.erase(0, 7);
    if (number > 1 && name != "[none]") names.insert(name);
  }
  return names;
}

class PDFFontList : public testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_EQ(InitializeGlyphsureXMP(), 0); }
  static void TearDownTestSuite() { TerminateGlyphsureXMP(); }
  // The sample in another form.
  std::string Rewrite(const char* name, const std::function<void(QPDFWriter&)>& choose) const {
    QPDF pdf;
    pdf.processFile(SOURCE_DIR "/samples/leaflet.pdf");
    const std::string path = folder / name;
    QPDFWriter writer(pdf, path.c_str());
    choose(writer);
    writer.write();
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

TEST_F(PDFFontList, EveryFormOfADocumentNamesTheSameFonts) {
  const std::string forms[] = {
      SOURCE_DIR "/samples/leaflet.pdf",
      Rewrite("streams.pdf", [](QPDFWriter& writer) { writer.setObjectStreamMode(qpdf_o_generate); }),
      Rewrite("linear.pdf", [](QPDFWriter& writer) { writer.setLinearization(true); }),
      Rewrite("encrypted.pdf",
              [](QPDFWriter& writer) {
                writer.setR6EncryptionParameters("", "owner", true, true, true, true, true, true, qpdf_r3p_full, true);
              }),
  };
  for (const std::string& path : forms) {
    const docfonts::Report report = docfonts::CollectFonts(path);
    EXPECT_EQ(NamesOf(report), (Names{"NimbusRoman-Italic", "NimbusSans-Bold"})) << path;
    EXPECT_EQ(NamesOf(report), ListedByPdffonts(path)) << path;
    EXPECT_TRUE(report.problems.empty()) << path << ": " << report.problems[0];
  }
  const docfonts::Report locked = docfonts::CollectFonts(Rewrite("locked.pdf", [](QPDFWriter& writer) {
    writer.setR6EncryptionParameters("user", "owner", true, true, true, true, true, true, qpdf_r3p_full, true);
  }));
  EXPECT_THAT(locked.problems, testing::ElementsAre("it is encrypted with a password"));
}

// Each font stands in another place of the page, and all that point to it form circles.
TEST_F(PDFFontList, FindsFontsWhereverAPageUsesThem) {
  const std::string path = Make(
      "/Annots[8 0 R] /Resources 4 0 R",
      "4 0 obj\n<</Font 5 0 R/XObject<</F 6 0 R>>/Pattern<</P 7 0 R>>>>\nendobj\n"
      "5 0 obj\n<</A 10 0 R/B<</Type/Font/Subtype/Type1/BaseFont/Direct,Bold>>/C 11 0 R/D 12 0 R>>\nendobj\n"
      "6 0 obj\n<</Subtype/Form/Resources<</Font<</A 13 0 R>>/XObject<</F 6 0 R/G 7 0 R>>>>/Length 0>>stream\n\nendstream\nendobj\n"
      "7 0 obj\n<</PatternType 1/Resources<</Font<</A 14 0 R>>/Pattern<</P 7 0 R>>>>/Length 0>>stream\n\nendstream\nendobj\n"
      "8 0 obj\n<</Subtype/Widget/AS/On/AP<</N<</On 9 0 R>>>>>>\nendobj\n"
      "9 0 obj\n<</Subtype/Form/Resources<</Font<</A 15 0 R>>>>/Length 0>>stream\n\nendstream\nendobj\n"
      "10 0 obj\n<</Type/Font/Subtype/Type1/BaseFont/ABCDEF+Shared/FontDescriptor<</FontFile3 9 0 R>>>>\nendobj\n"
      "11 0 obj\n<</Type/Font/Subtype/Type0/BaseFont/Composite/DescendantFonts[<</Subtype/CIDFontType2>>]>>\nendobj\n"
      "12 0 obj\n<</Type/Font/Subtype/Type3>>\nendobj\n"
      "13 0 obj\n<</Type/Font/Subtype/TrueType/BaseFont/InForm>>\nendobj\n"
      "14 0 obj\n<</Type/Font/Subtype/Type1/BaseFont/In#20Pattern>>\nendobj\n"
      "15 0 obj\n<</Type/Font/Subtype/Type1/BaseFont/In#E4nnotation>>\nendobj\n");
  const docfonts::Report report = docfonts::CollectFonts(path);
  EXPECT_EQ(NamesOf(report), (Names{"Shared", "Direct,Bold", "Composite", "InForm", "In Pattern", "In#E4nnotation"}));
  for (const docfonts::Font& font : report.fonts) {
    EXPECT_EQ(font.embedded, font.name == "Shared") << font.name;
    EXPECT_EQ(font.subset, font.name == "Shared" ? "ABCDEF" : "") << font.name;
    if (font.name == "Composite") {
      EXPECT_EQ(font.type, "CIDFontType2");
    }
  }
}

TEST_F(PDFFontList, EveryTruncationEnds) {
  const std::string whole = test_support::TempFolder::Content(SOURCE_DIR "/samples/leaflet.pdf");
  for (size_t size = 8; size < whole.size(); size += size < 1000 ? 61 : 997) {
    const docfonts::Report report = docfonts::CollectFonts(folder.Write("cut.pdf", whole.substr(0, size)));
    EXPECT_FALSE(report.problems.empty()) << size;
  }
}

}  // namespace
