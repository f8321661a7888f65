// Identification data in PDF font dictionaries, font records from PDF fonts, and the document inside a document.
#include <gmock/gmock.h>
#include <zlib.h>

#include "Readers/FontParserPDF.h"
#include "support/PDFFile.h"
#include "support/PluginFixture.h"
#include "support/ProcessIO.h"
#include "support/Records.h"
#include "support/ScopedVariable.h"

namespace {

using namespace GlyphsureSupport;
using fakes::Record;
using platform::Array;
using platform::Dictionary;
using platform::FileURL;
using test_support::Font;
using test_support::OnePage;
using test_support::PDFFile;
using test_support::PDFObjects;
using test_support::Stream;
using testing::ElementsAre;
using Names = std::vector<std::string>;

class PDFSlugFixture : public fakes::PluginFixture {
 protected:
  Array RecordsOf(const std::string& bytes, bool wantGlyphsure = true) {
    const std::string path = folder.Write("file.pdf", bytes);
    const auto parser = FontParser::CreateParserWithFile(path, true, FontParser::GetDefaultSystemPathStyle());
    Array records = Array::Create();
    parser->Parse();
    parser->GetObsoleteGlyphsureData(wantGlyphsure, &records);
    return records;
  }
  static Names NamesIn(const Array& records) {
    Names names;
    for (size_t i = 0; i < records.Count(); ++i) {
      names.push_back(Dictionary(records.At(i)).GetString(kGS_PostScriptNameKey).Text());
    }
    return names;
  }
};

std::string WithFonts(const PDFObjects& fonts) {
  std::string list;
  for (const auto& [number, text] : fonts) list += "/F " + std::to_string(number) + " 0 R ";
  return PDFFile().Add(OnePage("/Font << " + list + ">>", fonts)).Bytes();
}

TEST_F(PDFSlugFixture, ValueOfAKey) {
  struct Case {
    const char *text, *value;  // null for none
  };
  const Case cases[] = {
      {"/Kind (a)", "a"},
      {"/Kind\t 12/x", "12"},
      {"/Kind(a (b) c)", "a (b) c"},
      {"/Kind (a (b) (c) d)", "a (b) (c"},
      {"/Kind 12>>", "12"},
      {"/Kind 12\f", "12"},
      {"/Kind 12", "12"},
      {"/KindOf 3 /Kind 4", "Of"},
      {"/Kind (a) << /Kind (b) >>", "a"},
      {"/Kind ()", nullptr},
      {"/Kind (a", nullptr},
      {"/Kind (a (b)", nullptr},
      {"/Kind /x", nullptr},
      {"/Kind", nullptr},
      {"/Kind ", nullptr},
      {"", nullptr},
  };
  for (const Case& c : cases) {
    std::string value = "untouched";
    EXPECT_EQ(FontParserPDF::ParseKeyFromGlyphsureBuffer(c.text, "/Kind", value), c.value != nullptr) << c.text;
    EXPECT_EQ(value, c.value ? c.value : "untouched") << c.text;
  }
}

const Dictionary kRecord = Record({{kGS_PostScriptNameKey, "A-Bold"},
                                   {kGS_FamilyKey, "A (new)"},
                                   {kGS_KerningChecksumKey, "123"},
                                   {kGS_ChecksumKey, "12x"},
                                   {kGS_OutlineFileSizeKey, ""},
                                   {kGS_Glyphsure_1_2_Key, "456"},
                                   {kGS_OutlineFileNameKey, "a.otf"},
                                   {kGS_VersionKey, "1.0"}});
constexpr const char* kSlug =
    "/FontIdentifier\r\n<<\r\n/Type /Glyphsure\r\n/Family (A (new))\r\n/Kerning 123\r\n/Glyphsure_1_2_Checksum 456\r\n"
    "/Version (1.0)\r\n>>\r\n";

TEST_F(PDFSlugFixture, IsFormedInTheOrderOfTheRecordAndReadBack) {
  PDFFontRecord font;
  font.sGlyphsureDictionary = "<< /BaseFont /ABCDEF+A-Bold ";
  FontParserPDF::ConvertFontRecordToPDFFont(kRecord, &font);
  EXPECT_EQ(font.sGlyphsureDictionary, "<< /BaseFont /ABCDEF+A-Bold " + std::string(kSlug));

  const Array records = RecordsOf(WithFonts({{5, font.sGlyphsureDictionary + ">>"}}));
  ASSERT_EQ(records.Count(), 1u);
  EXPECT_TRUE(records.At(0).Equals(Record({{kGS_PostScriptNameKey, "A-Bold"},
                                           {kGS_VersionKey, "1.0"},
                                           {kGS_KerningChecksumKey, "123"},
                                           {kGS_Glyphsure_1_2_Key, "456"},
                                           {kGS_FamilyKey, "A (new)"}})));
  EXPECT_EQ(Dictionary(RecordsOf(WithFonts({{5, font.sGlyphsureDictionary + ">>"}}), false).At(0)).Count(), 1u);
  // Without the mark the same keys are the document's own.
  EXPECT_EQ(Dictionary(RecordsOf(WithFonts({{5, Font("A", "/Version (1) /Family (B)")}})).At(0)).Count(), 1u);
}

TEST_F(PDFSlugFixture, IsAppendedOnlyToAnOpenDictionary) {
  for (const char* text : {"", "<<", "x << /A"}) {
    PDFFontRecord font;
    font.sGlyphsureDictionary = text;
    FontParserPDF::ConvertFontRecordToPDFFont(kRecord, &font);
    EXPECT_EQ(font.sGlyphsureDictionary, text);
  }
  EXPECT_EQ(TracedLines("ERROR:  FontParserPDF::ConvertFontRecordToPDFFont").size(), 3u);
  PDFFontRecord font;
  font.sGlyphsureDictionary = "<< /A";
  FontParserPDF::ConvertFontRecordToPDFFont(Record({{kGS_FamilyKey, "A"}}), &font);
  EXPECT_EQ(font.sGlyphsureDictionary, "<< /A") << "a record with one key identifies nothing";
  FontParserPDF::ConvertFontRecordToPDFFont(kRecord, nullptr);
  // 255 bytes, and no half character.
  std::string longest(254, 'x');
  FontParserPDF::ConvertFontRecordToPDFFont(Record({{kGS_FamilyKey, longest + "\xC3\xA4"}, {kGS_KindKey, "K"}}), &font);
  EXPECT_THAT(font.sGlyphsureDictionary, testing::HasSubstr("/Family (" + longest + ")\r\n/Kind (K)"));
}

TEST_F(PDFSlugFixture, CrossReferenceLinesAndSubsections) {
  EXPECT_EQ(FontParserPDF::CreateXRefEntry(1234, 0), "0000001234 00000 n\r\n");
  const std::string path =
      folder.Write("file.pdf", WithFonts({{7, Font("A")}, {8, Font("B")}, {9, Font("C")}, {12, Font("D")}}));
  FontParserPDF parser(FileURL::FromFileSystemRepresentation(path), path);
  parser.Parse();
  for (const auto& [index, first, count] : {std::tuple{0, 7, 3u}, {1, 8, 2u}, {3, 12, 1u}, {4, -1, 0u}}) {
    int32_t object = -1;
    EXPECT_EQ(parser.CalculateSubsection(static_cast<size_t>(index), object), count) << index;
    EXPECT_EQ(object, first) << index;
  }
}

TEST_F(PDFSlugFixture, RecordsJoinThoseThatAreThere) {
  Connect();
  const std::string bytes = WithFonts({{5, Font("A-Bold", "/FontIdentifier << /Kind (DFont) >>")},
                                       {6, Font("ABold")},
                                       {7, Font("B", "/FontIdentifier << /Kind (OpenType - TT) >>")},
                                       {8, Font("M\xE4x")}});
  const std::string path = folder.Write("file.pdf", bytes);
  const auto parser = FontParser::CreateParserWithFile(path, true, FontParser::GetDefaultSystemPathStyle());
  parser->Parse();
  Array records = Array::Create();
  records.Append(Record({{kGS_PostScriptNameKey, "B"}}));
  parser->GetObsoleteGlyphsureData(true, &records);
  EXPECT_THAT(NamesIn(records), ElementsAre("B", "A-Bold", "M\xE2\x80\xB0x"));
  EXPECT_EQ(Dictionary(records.At(1)).GetString(kGS_KindKey).View(), "TrueType") << "old words for kinds are mapped";
  EXPECT_EQ(parser->GetError(), 0);
  parser->GetObsoleteGlyphsureData(true, nullptr);
  const std::string comments = folder.Write(
      "file.eps", "%!PS\n%%DocumentFontSpecs: <FONTSPEC NAME=\"A\" KIND=\"DFont\"/>\n" + std::string(1000, '\n'));
  const auto other = FontParser::CreateParserWithFile(comments, true, FontParser::GetDefaultSystemPathStyle());
  other->Parse();
  other->GetObsoleteGlyphsureData(true, &records);
  EXPECT_EQ(Dictionary(records.At(0)).GetString(kGS_KindKey).View(), "TrueType");
  EXPECT_EQ(FontParser::CreateParserWithFile(folder / "missing", true, platform::PathStyle::kPOSIX), nullptr);
  EXPECT_EQ(FontParser::CreateParserWithFile(folder.Write("a", "text"), true, platform::PathStyle::kPOSIX), nullptr);
  EXPECT_NE(FontParser::CreateParserWithFile(path, true, platform::PathStyle::kHFS), nullptr);
  EXPECT_EQ(TracedLines("WARNING: CFURLCreateWithFileSystemPath('" + path).size(), 1u);
}

std::string Deflated(const std::string& bytes) {
  uLongf size = compressBound(bytes.size());
  std::string packed(size, '\0');
  compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size());
  return packed.substr(0, size);
}

// A document with the font A whose page holds private data.
std::string WithPrivateData(const std::string& stream) {
  return PDFFile()
      .Add(OnePage("/Font << /X 5 0 R >> /PieceInfo << /Illustrator 6 0 R >>",
                   {{5, Font("A")},
                    {6, "<< /LastModified (D:2020) /Private 7 0 R >>"},
                    {7, "<< /AIMetaData 9 0 R /AIPrivateData2 8 0 R >>"},
                    {8, stream}}))
      .Bytes();
}

TEST_F(PDFSlugFixture, PrivateDataAreUnpackedAndParsed) {
  const std::string inner = WithFonts({{5, Font("A")}, {6, Font("Inner")}});
  const std::string tag = "%AI12_CompressedData";
  const std::string postScript =
      "%!PS-Adobe-3.0\n%%DocumentNeededFonts: Inner\n%%+ A\n%%EndComments\n" + std::string(1000, '\n');
  struct Case {
    const char* rule;
    std::string stream;
    Names names;
  };
  const Case cases[] = {
      {"as it is", Stream(inner), {"A", "Inner"}},
      {"flate", Stream(Deflated(inner), "/Filter [/FlateDecode]"), {"A", "Inner"}},
      {"flate, named alone", Stream(Deflated(inner), "/Filter/FlateDecode /DL 9"), {"A", "Inner"}},
      {"of several filters the last counts", Stream(inner, "/Filter [/FlateDecode /None]"), {"A", "Inner"}},
      {"behind more than a line end", "<< /Filter /FlateDecode >> stream \r\n\n" + Deflated(inner), {"A", "Inner"}},
      {"the tag says flate", Stream(tag + Deflated(inner)), {"A", "Inner"}},
      {"flate takes no notice of the length",
       "<< /Length 1 /Filter [/FlateDecode] >> stream\n" + Deflated(inner),
       {"A", "Inner"}},
      {"PostScript", Stream(postScript), {"A", "Inner"}},
      {"PostScript, compressed", Stream(tag + Deflated(postScript)), {"A", "Inner"}},
      {"a length beyond the file", "<< /Length 2147483647 >> stream\n" + inner, {"A"}},
      {"a wrong length", "<< /Length 10 >> stream\n" + inner, {"A"}},
      {"not flate at all", Stream(inner, "/Filter [/FlateDecode]"), {"A"}},
      {"cut off", Stream(tag + Deflated(inner).substr(0, 40)), {"A"}},
      {"no stream", "<< /Length 10 >>", {"A"}},
      {"empty", Stream(""), {"A"}},
  };
  for (const Case& c : cases) {
    trace.clear();
    EXPECT_EQ(NamesIn(RecordsOf(WithPrivateData(c.stream))), c.names) << c.rule;
    EXPECT_EQ(TracedLines("Creating temp file").size(), TracedLines("Deleted temp file").size()) << c.rule;
  }
  EXPECT_EQ(NamesIn(RecordsOf(WithPrivateData(Stream(WithPrivateData(Stream(inner)))))), (Names{"A", "Inner"}));
  std::string nested = inner;
  for (int i = 0; i < 10; ++i) nested = WithPrivateData(Stream(Deflated(nested), "/Filter [/FlateDecode]"));
  EXPECT_EQ(NamesIn(RecordsOf(nested)), Names{"A"}) << "documents in documents end somewhere";
}

TEST_F(PDFSlugFixture, PrivateDataThatCannotBeReachedLeaveThePages) {
  {
    const test_support::ScopedVariable variable("TMPDIR", (folder / "missing").c_str());
    EXPECT_EQ(NamesIn(RecordsOf(WithPrivateData(Stream(WithFonts({{5, Font("B")}}))))), Names{"A"});
    EXPECT_EQ(TracedLines("Creating temp file \"" + folder / "missing").size(), 1u);
    EXPECT_TRUE(TracedLines("Deleted temp file").empty());
  }
  for (const size_t size : {50'000'000, 100'000'000}) {
    const std::string bomb = Deflated(std::string(size, ' '));
    const uint64_t written = test_support::BytesWrittenByProcess();
    EXPECT_EQ(NamesIn(RecordsOf(WithPrivateData(Stream(bomb, "/Filter [/FlateDecode]")))), Names{"A"});
    EXPECT_LT(test_support::BytesWrittenByProcess() - written, (size_t{1} << 20) + 70 * bomb.size());
  }
  // Each of these leads back to itself.
  for (const char* illustrator : {"<< /Private 6 0 R >>", "<< /AIPrivateData2 6 0 R >>", "<< /Private 99 0 R >>"}) {
    const std::string bytes =
        PDFFile().Add(OnePage("/Font << /X 5 0 R >> /Illustrator 6 0 R", {{5, Font("A")}, {6, illustrator}})).Bytes();
    EXPECT_EQ(NamesIn(RecordsOf(bytes)), Names{"A"}) << illustrator;
  }
}

}  // namespace
