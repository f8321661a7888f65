// The fonts of PDF files that show one rule each, and of files that are damaged or made to do harm.
#include <gmock/gmock.h>

#include "Readers/FontParserPDF.h"
#include "support/PDFFile.h"
#include "support/ProcessIO.h"
#include "support/TempFolder.h"

namespace {

using platform::FileURL;
using test_support::Font;
using test_support::OnePage;
using test_support::PDFFile;
using test_support::PDFObjects;
using test_support::Stream;
using testing::ElementsAre;
using Names = std::vector<std::string>;

class PDFReaderFixture : public ::testing::Test {
 protected:
  std::unique_ptr<FontParserPDF> Parse(const std::string& bytes) {
    const std::string path = folder.Write("file.pdf", bytes);
    auto parser = std::make_unique<FontParserPDF>(FileURL::FromFileSystemRepresentation(path), path);
    parser->Parse();
    return parser;
  }
  Names NamesIn(const std::string& bytes) {
    const auto parser = Parse(bytes);
    Names names;
    for (const PDFFontRecord& font : parser->GetFontRecords()) names.push_back(font.name);
    return names;
  }
  Names NamesOf(const PDFObjects& objects) { return NamesIn(PDFFile().Add(objects).Bytes()); }
  PDFFontRecord OnlyFontOf(const std::string& object) {
    const auto parser = Parse(PDFFile().Add(OnePage("/Font << /F 5 0 R >>", {{5, object}})).Bytes());
    return parser->GetFontRecords().at(0);
  }
  test_support::TempFolder folder;
};

TEST_F(PDFReaderFixture, FontsOfAPage) {
  struct Case {
    const char* rule;
    std::string page;
    PDFObjects others;
    Names names;
  };
  const PDFObjects fonts = {{5, Font("A")}, {6, Font("B")}};
  const auto and_ = [&](PDFObjects others) {
    others.insert(fonts.begin(), fonts.end());
    return others;
  };
  const Case cases[] = {
      {"in order of use, each once", "/Resources << /Font << /X 6 0 R /Y 5 0 R /Z 6 0 R >> >>", fonts, {"B", "A"}},
      {"resources of their own", "/Resources 7 0 R", and_({{7, "<< /Font << /X 5 0 R >> >>"}}), {"A"}},
      {"a font list of its own", "/Resources << /Font 7 0 R >>", and_({{7, "<< /X 5 0 R >>"}}), {"A"}},
      {"both", "/Resources 8 0 R", and_({{7, "<< /X 5 0 R >>"}, {8, "<< /Font 7 0 R >>"}}), {"A"}},
      {"keys behind a reference", "/Resources 7 0 R /Font << /X 5 0 R >>", and_({{7, "<< >>"}}), {"A"}},
      {"of other resources only some end the line",
       "/Resources << /ProcSet [/PDF [/Text]] /ExtGState << /G << /Font [6 0 R 9] "
       ">> >> /Properties << /M << /Font << /X 6 0 R >> >> >> /Font << /X 5 0 R >> >>",
       fonts,
       {"A"}},
      {"a pattern hides what follows on its line",
       "/Resources << /Pattern << /P 9 0 R >> /Font << /X 5 0 R >>\n>>",
       fonts,
       {}},
      {"an array ends the resources",
       "/Resources 7 0 R",
       and_({{7, "<< /ColorSpace << /C [/Lab] >> /Font << /X 5 0 R >> >>"}}),
       {}},
      {"a longer key is another key",
       "/Resources << /XObject << /Font5 9 0 R >> /Font<</F#31 5 0 R>> >>",
       fonts,
       {"A"}},
      {"of a font that can't be found on, none is read", "/Font << /X 5 0 R /Y 9 0 R /Z 6 0 R >>", fonts, {"A"}},
      {"a direct font hides what follows", "/Font << /X << /BaseFont /C >> /Y 5 0 R >>", fonts, {}},
      {"a wrong generation is another object", "/Font << /X 5 1 R /Y 6 0 R >>", fonts, {}},
  };
  for (const Case& c : cases) EXPECT_EQ(NamesOf(OnePage(c.page, c.others)), c.names) << c.rule;
}

TEST_F(PDFReaderFixture, PageTree) {
  const auto page = [](int font) { return "<< /Type /Page /Font << /X " + std::to_string(font) + " 0 R >> >>"; };
  PDFObjects objects = {{1, "<< /Pages 2 0 R /Type /Pages /PageMode /Pages /Names << /Pages 9 0 R >> >>"},
                        {2, "<< /Kids [3 0 R 4 0 R] /Type /Pages /MediaBox [0 0 9 9] /Rotate 90 /Count 3 >>"},
                        {3, "<< /Type /Pages /Parent 2 0 R /CropBox [0 0 9 9] /Kids [5 0 R 6 0 R] /Count 2 >>"},
                        {4, page(7)},
                        {5, page(8)},
                        {6, page(9)},
                        {7, Font("A")},
                        {8, Font("B")},
                        {9, Font("C")}};
  // A node uses up the count as a page does.
  EXPECT_THAT(NamesOf(objects), ElementsAre("A", "B"));
  objects[2] = "<< /Kids [3 0 R 4 0 R] /Count 4 >>";
  EXPECT_THAT(NamesOf(objects), ElementsAre("A", "B", "C"));
  objects[2] = "<< /Kids 3 0 R /Count 4 >>";
  EXPECT_THAT(NamesOf(objects), ElementsAre("B", "C"));
  for (const char* count : {"0", "-4", "/x"}) {
    objects[2] = "<< /Kids [3 0 R 4 0 R] /Count " + std::string(count) + " >>";
    EXPECT_TRUE(NamesOf(objects).empty()) << count;
  }
}

TEST_F(PDFReaderFixture, ObjectsAreFoundFromTheHeaderOnAndInTheNewestSection) {
  const PDFObjects objects = OnePage("/Font << /X 5 0 R >>", {{5, Font("Old")}});
  EXPECT_THAT(NamesIn(PDFFile("0123456789%PDF-1.4\n").Add(objects).Bytes()), ElementsAre("Old"));
  EXPECT_TRUE(NamesIn(PDFFile(std::string(1001, 'x') + "%PDF-1.4\n").Add(objects).Bytes()).empty());
  EXPECT_TRUE(NamesIn("%" + PDFFile().Add(objects).Bytes()).empty()) << "a % before the header hides it";
  PDFFile file;
  file.Add(objects).Add({{5, Font("New")}}).Add({{9, "null"}});
  EXPECT_THAT(NamesIn(file.Bytes()), ElementsAre("New"));
  EXPECT_EQ(Parse(PDFFile().Add(objects, "/Size 9").Add({{9, "null"}}, "/Size 7").Bytes())->GetSize(), 9);
  PDFFile trailers;
  trailers.Add(objects, "/Root 9 0 R").Add({{9, "null"}}, "/ID [(a >> b)]");
  EXPECT_THAT(NamesIn(trailers.Bytes()), ElementsAre("Old"))
      << "the first root counts; \">>\" in an identifier ends nothing";
  EXPECT_TRUE(NamesIn(file.Bytes() + std::string(100, ' ')).empty()) << "the end of the file is not searched further";

  // Offsets that are off, as the table's own is: of "xref" the line shows less.
  struct Case {
    int off, lowered;
    bool isRead;
  };
  for (const Case& c : {Case{1, 1, true}, Case{1, 2, false}, Case{2, 2, true}, Case{3, 4, true}, Case{3, 5, false},
                        Case{4, 4, false}}) {
    // What counts from a place after the header when the table is reached is read from a place before it.
    std::string bytes = PDFFile().Add(objects).Bytes();
    const std::string table = std::to_string(PDFFile().Add(objects).Table());
    bytes.replace(bytes.rfind(table), table.size(), std::to_string(std::stoi(table) + c.off));
    for (const char* number : {"1 1", "2 1", "3 1", "5 1"}) {
      const size_t at = bytes.find(number + std::string("\n")) + 4;
      char entry[16];
      std::snprintf(entry, sizeof entry, "%010d", std::stoi(bytes.substr(at, 10)) + c.lowered);
      bytes.replace(at, 10, entry);
    }
    EXPECT_EQ(NamesIn(bytes).size(), c.isRead ? 1u : 0u) << c.off << " " << c.lowered;
  }
}

TEST_F(PDFReaderFixture, FontDictionary) {
  const PDFFontRecord font = OnlyFontOf(
      "<< /Type /Font /Subtype /TrueType /BaseFont /ABCDEF+A,B /Encoding << /Differences [1 /x] "
      ">>\n/Widths [1 2] /FirstChar 1 /CharSet (x)\n /FontFile3 9 0 R\n/Key 1>>");
  EXPECT_EQ(font.name, "A-B");
  EXPECT_EQ(font.object.nObjectNumber, 5);
  EXPECT_EQ(font.type, PDFFontType::kType1);
  EXPECT_EQ(font.encoding, PDFFontEncoding::kOther);
  EXPECT_TRUE(font.embedded);
  EXPECT_TRUE(font.sGlyphsureDictionary.starts_with("<< /Type /Font "));
  EXPECT_TRUE(font.sGlyphsureDictionary.ends_with("/Key 1"));

  struct Case {
    const char* keys;
    PDFFontType type;
    PDFFontEncoding encoding;
    bool embedded;
  };
  using enum PDFFontType;
  using enum PDFFontEncoding;
  const Case cases[] = {
      {"", kType1, kMacRoman, false},
      {"/Subtype /TrueType /Encoding /WinAnsiEncoding", kTrueType, kWinAnsi, false},
      {"/Subtype /Type3 /Encoding /MacExpertEncoding", kType3, kMacExpert, false},
      {"/Subtype /Type0 /Encoding /Identity-H", kComposite, kOther, false},
      {"/Subtype /MMType1 /Subtype /New /Encoding /MacRomanEncoding", kMultipleMaster, kMacRoman, false},
      {"/Type /CMap", kComposite, kMacRoman, false},
      {"/Subtype /Type1C /FontFile 9 0 R\n", kTrueType, kMacRoman, true},
      {"/Subtype /TrueType /FontFile2 9 0 R /Encoding /WinAnsiEncoding\n", kType1, kMacRoman, true},
  };
  for (const Case& c : cases) {
    const PDFFontRecord read = OnlyFontOf("<< " + std::string(c.keys) + " >>");
    EXPECT_EQ(read.type, c.type) << c.keys;
    EXPECT_EQ(read.encoding, c.encoding) << c.keys;
    EXPECT_EQ(read.embedded, c.embedded) << c.keys;
  }
}

TEST_F(PDFReaderFixture, FontNames) {
  const std::pair<const char*, const char*> names[] = {
      {"/Arial,Bold", "Arial-Bold"},
      {"/ABCDEF+Arial", "Arial"},
      {"A+B+C", "C"},
      {"/ABCDEF+AdobeCorpID-Minion", "Minion"},
      {"/AdobeCorpID-", ""},
      {"/AdobeCorpID-A+B", "B"},
      {"//x", "/x"},
      {"/A+", ""},
      {"", ""},
  };
  for (const auto& [name, expected] : names) {
    std::string stripped = name;
    FontParserPDF::StripPDFFontName(stripped);
    EXPECT_EQ(stripped, expected) << name;
  }
  EXPECT_EQ(OnlyFontOf(Font("Arial#20Bold")).name, "Arial Bold");
  EXPECT_EQ(OnlyFontOf(Font("MyriaMM_400_600_")).name, "MyriaMM");
  EXPECT_EQ(OnlyFontOf(Font("A") + "/FontName /B").name, "B");
  EXPECT_EQ(OnlyFontOf("<< /BaseFont 12 /FirstChar 1 >>").name, "12");
  // Names that are objects of their own; one is missing.
  const PDFObjects objects = {{5, "<< /BaseFont 8 0 R /Subtype /Type3 >>"},
                              {6, "<< /BaseFont 9 0 R >>"},
                              {7, "<< /FontName 8 0 R >>"},
                              {8, "/ABCDEF+A,Bold"}};
  const auto parser = Parse(PDFFile().Add(OnePage("/Font << /X 5 0 R /Y 6 0 R /Z 7 0 R >>", objects)).Bytes());
  Names read;
  for (const PDFFontRecord& font : parser->GetFontRecords()) read.push_back(font.name);
  EXPECT_THAT(read, ElementsAre("A-Bold", "", "A-Bold"));
  EXPECT_EQ(parser->GetFontRecords().at(0).type, PDFFontType::kType3) << "what follows the reference";
}

std::string Metadata(const std::string& list) {
  return Stream("<x:xmpmeta><rdf:Description><xmpTPg:NPages>1</xmpTPg:NPages>\n<xmpTPg:Fonts><rdf:Bag>" + list +
                "</rdf:Bag></xmpTPg:Fonts></rdf:Description></x:xmpmeta>");
}
std::string Entry(const std::string& name) {
  return "\n<rdf:li rdf:parseType=\"Resource\"><stFnt:fontName>" + name +
         "</stFnt:fontName>\n"
         "<stFnt:fontType>Type 1</stFnt:fontType></rdf:li>";
}

TEST_F(PDFReaderFixture, MetadataAddFontsToThoseOfThePages) {
  const auto names = [&](const std::string& metadata, const char* page) {
    PDFObjects objects = OnePage(page, {{5, Font("A")}, {6, metadata}});
    objects[1] = "<< /Metadata 6 0 R /Pages 2 0 R >>";
    return NamesOf(objects);
  };
  const std::string list = Metadata(Entry("A") + Entry("B") + Entry("B") + Entry("C"));
  EXPECT_THAT(names(list, "/Font << /X 5 0 R >>"), ElementsAre("A", "B", "C"));
  std::string shifted = list;
  shifted.insert(shifted.find("<xmpTPg:Fonts>"), "<a b>");
  EXPECT_THAT(names(shifted, "/Font << /X 5 0 R >>"), ElementsAre("A")) << "the list begins with the first of a pair";
  EXPECT_TRUE(names(list, "").empty()) << "pages without fonts: no document for this reader";
  EXPECT_THAT(names("<< >> stream\n<xmpTPg:Fonts><rdf:li><stFnt:fontName", "/Font << /X 5 0 R >>"), ElementsAre("A"));
}

TEST_F(PDFReaderFixture, EncryptedAndExchangeDocumentsTakeNoIdentification) {
  const PDFObjects objects = OnePage("/Font << /X 5 0 R >>", {{5, Font("A")}});
  EXPECT_FALSE(Parse(PDFFile().Add(objects).Bytes())->IsUnsluggableDocument());
  EXPECT_TRUE(Parse(PDFFile().Add(objects, "/Encrypt 9 0 R").Bytes())->IsUnsluggableDocument());
  PDFObjects marked = objects;
  marked[7] = "<< /GTS_PDFXVersion (PDF/X-1) >>";
  const std::string bytes = PDFFile().Add(marked).Bytes();
  EXPECT_TRUE(Parse(bytes)->IsUnsluggableDocument());
  // A damaged font list ends the reading of fonts, not the search for the mark.
  PDFFile damaged;
  damaged.Add(
      OnePage("/Font 9 0 R", {{7, "<< /Filler (" + std::string(600, 'x') + ") /GTS_PDFXVersion (PDF/X-1) >>"}}));
  const std::string entry = "xref\n1 1\n", beyond = "9 1\n0009999999 00000 n \n";
  std::string text = damaged.Bytes();
  text.insert(text.rfind(entry) + 5, beyond);
  const auto parser = Parse(text);
  EXPECT_NE(parser->GetError(), 0);
  const uint64_t read = parser->GetBytesRead();
  EXPECT_TRUE(parser->IsUnsluggableDocument());
  EXPECT_GT(parser->GetBytesRead(), read);
  // Where the mark falls across two blocks of 256 bytes it is not seen.
  EXPECT_FALSE(Parse(std::string(256 - 4 - bytes.find("GTS_PDFX") % 256, ' ') + bytes)->IsUnsluggableDocument());
}

TEST_F(PDFReaderFixture, ObjectStreamsGiveNoFontsAndNoError) {
  const std::string bytes =
      "%PDF-1.5\n1 0 obj\n<< /Type /XRef /Root 2 0 R >>\nstream\n\nendstream\nendobj\nstartxref\n9\n%%EOF\n";
  const auto parser = Parse(bytes);
  EXPECT_TRUE(parser->GetFontRecords().empty());
  EXPECT_EQ(parser->GetError(), 0);
}

TEST_F(PDFReaderFixture, WhatWouldNotEndDoes) {
  const PDFObjects fonts = {{5, Font("A")}};
  struct Case {
    const char* rule;
    PDFObjects objects;
    Names names;
  };
  PDFObjects tree = OnePage("/Font << /X 5 0 R >>", fonts), loop = tree;
  tree[2] = "<< /Kids [2 0 R 4 0 R] /Count 2147483647 >>";
  tree[4] = "<< /Kids [2 0 R 4 0 R 3 0 R] >>";
  loop = OnePage("/Resources 7 0 R /Font 8 0 R /Font << /X 5 0 R >>",
                 {{5, Font("A")}, {7, "7 0 R"}, {8, "9 0 R"}, {9, "8 0 R"}});
  // Resources at the end of so many references.
  const auto deep = [&](int count) {
    PDFObjects objects = OnePage("/Resources 10 0 R /Font << /X 5 0 R >>", {{5, Font("A")}, {6, Font("Deep")}});
    for (int i = 10; i < 10 + count; ++i) objects[i] = std::to_string(i + 1) + " 0 R";
    objects[10 + count] = "<< /Font << /X 6 0 R >> >>";
    return objects;
  };
  EXPECT_THAT(NamesOf(tree), ElementsAre("A"));
  EXPECT_THAT(NamesOf(loop), ElementsAre("A"));
  EXPECT_THAT(NamesOf(deep(20)), ElementsAre("Deep", "A"));
  EXPECT_THAT(NamesOf(deep(5000)), ElementsAre("A")) << "the stack has an end";
  PDFFile file;
  file.Add(OnePage("/Font << /X 5 0 R >>", fonts));
  EXPECT_THAT(
      NamesIn(PDFFile().Add(OnePage("/Font << /X 5 0 R >>", fonts), "/Prev " + std::to_string(file.Table())).Bytes()),
      ElementsAre("A"))
      << "a section that names itself as the one before";
}

TEST_F(PDFReaderFixture, NumbersOutOfRangeAndTruncationEnd) {
  const std::string bytes =
      PDFFile().Add(OnePage("/Resources 7 0 R", {{5, Font("A")}, {7, "<< /Font << /X 5 0 R >> >>"}})).Bytes();
  ASSERT_THAT(NamesIn(bytes), ElementsAre("A"));
  for (size_t size = 0; size < bytes.size(); ++size) Parse(bytes.substr(0, size));
  // Each number, replaced.
  for (const char* number : {"-1", "99999999999999999999"}) {
    for (size_t at = 0; (at = bytes.find_first_of("0123456789", at)) != std::string::npos;) {
      const size_t end = bytes.find_first_not_of("0123456789", at);
      Parse(std::string(bytes).replace(at, end - at, number));
      at = end;
    }
  }
}

TEST_F(PDFReaderFixture, CostGrowsWithTheFileWhateverItHolds) {
  // Each object begins in the one before, and all end at the same place.
  const auto overlapping = [](int count) {
    std::string kids, bytes = "%PDF-1.4\n", table = "xref\n1 " + std::to_string(count) + "\n";
    for (int i = 3; i <= count; ++i) kids += std::to_string(i) + " 0 R ";
    for (int i = 1; i <= count; ++i) {
      char entry[32];
      std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", bytes.size());
      table += entry;
      bytes += std::to_string(i) + " 0 obj ";
      if (i == 1) bytes += "<< /Pages 2 0 R >> endobj ";
      if (i == 2) bytes += "<< /Count 999999 /Kids [" + kids + "] >> endobj ";
    }
    bytes += "endobj ";
    const std::string at = std::to_string(bytes.size());
    return bytes + table + "trailer << /Root 1 0 R >> startxref " + at;
  };
  // Every page has the same large resources.
  const auto shared = [](int count) {
    PDFObjects objects = {{1, "<< /Pages 2 0 R >>"}, {3, "<< /Font << "}};
    std::string kids;
    for (int i = 4; i < count + 4; ++i) {
      kids += std::to_string(i) + " 0 R ";
      objects[i] = i % 2 ? Font("F" + std::to_string(i)) : "<< /Resources 3 0 R >>";
      if (i % 2) objects[3] += "/F " + std::to_string(i) + " 0 R ";
    }
    objects[3] += ">> >>";
    objects[2] = "<< /Count 999999 /Kids [" + kids + "] >>";
    return PDFFile().Add(objects).Bytes();
  };
  const std::function<std::string(int)> makers[] = {overlapping, shared};
  for (const auto& make : makers) {
    const std::string one = make(2000), two = make(4000);
    const auto first = Parse(one), second = Parse(two);
    EXPECT_LE(first->GetBytesRead(), 16 * one.size() + 65536);
    const uint64_t before = test_support::BytesReadByProcess();
    const uint64_t counted = Parse(one)->GetBytesRead();
    EXPECT_LE(test_support::BytesReadByProcess() - before, counted + 8192);
    EXPECT_LE(second->GetBytesRead(), first->GetBytesRead() * two.size() / one.size() * 11 / 10);
  }
  EXPECT_EQ(Parse(shared(2000))->GetFontRecords().size(), 1000u);
}

}  // namespace
