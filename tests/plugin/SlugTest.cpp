// The font data in the metadata of real files: copies of the samples, and small files with an XMP packet.
#include "platform/Files.h"
#include "plugin/HostFixture.h"

using fakes::ArrayOf;
using fakes::Entries;
using fakes::NamesOf;
using fakes::Record;
using platform::Array;
using platform::Dictionary;

namespace {

class SlugFixture : public HostFixture {
 protected:
  static std::string SlugOf(const std::string& path) {
    const Array slug = Array::Create();
    EXPECT_EQ(ReadXMPGlyphsureSlugFromFile(path, slug), CoreErrorCodes::kSuccess);
    return NamesOf(slug);
  }
  static Array Fonts(int count) {
    Array fonts = Array::Create();
    for (int i = 1; i <= count; ++i)
      fonts.Append(Record({{"PostScriptName", "Font" + std::to_string(i)}, {"Version", "1"}}));
    return fonts;
  }
  // A file of unknown format with a packet. The properties are in the slug's namespace "v" and in Adobe's "t".
  std::string WritePacket(const std::string& properties, size_t padding) {
    return folder.Write("packet.bin",
                        "lead\n<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>"
                        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">"
                        "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
                        "<rdf:Description rdf:about=\"\" xmlns:v=\"" +
                            std::string(kXMP_VELORANT_GLYPHSURE) + "\" xmlns:t=\"" + kXMP_ADOBE_FONTDATA +
                            "\" xmlns:stFnt=\"" + platform::kXMP_NS_FontType + "\">" + properties +
                            "</rdf:Description></rdf:RDF></x:xmpmeta>" + std::string(padding, ' ') +
                            "<?xpacket end=\"w\"?>\ntail");
  }
  static std::string List(const std::string& name, const std::vector<std::string>& items) {
    std::string list = "<" + name + "><rdf:Seq>";
    for (const std::string& item : items) list += "<rdf:li " + item + "</rdf:li>";
    return list + "</rdf:Seq></" + name + ">";
  }
  static std::string Struct(const std::string& fields) { return "rdf:parseType=\"Resource\">" + fields; }
};
using Slug = SlugFixture;

TEST_F(Slug, ComesBackAsItWasWrittenAndTheFileKeepsItsDate) {
  for (const char* sample : {"poster.psd", "leaflet.pdf"}) {
    const std::string path = Sample(sample);
    ASSERT_TRUE(platform::SetFileModificationDate(path, 1'234'567'890'123'456'789));
    const Dictionary font = Record({{"PostScriptName", "Größe-Bold"}, {"Version", "1.0 & <2>"}, {"DatabaseID", "7"}});
    EXPECT_EQ(WriteXMPGlyphsureSlugToFile(path, ArrayOf({font})), CoreErrorCodes::kSuccess) << sample;
    EXPECT_FALSE(font.Contains("DatabaseID")) << "what no document may store leaves the caller's records too";
    EXPECT_EQ(platform::GetFileModificationDate(path), 1'234'567'890'123'456'789u) << sample;
    const Array slug = Array::Create();
    ReadXMPGlyphsureSlugFromFile(path, slug);
    ASSERT_EQ(slug.Count(), 1u) << sample;
    EXPECT_TRUE(slug.At(0).Equals(font)) << sample;
  }
}

TEST_F(Slug, IsReplacedEmptiedAndLeftAlone) {
  const std::string path = Sample("no-text.psd");
  WriteXMPGlyphsureSlugToFile(path, Fonts(3));
  EXPECT_EQ(SlugOf(path), "Font1 Font2 Font3");
  WriteXMPGlyphsureSlugToFile(path, Fonts(1));
  EXPECT_EQ(SlugOf(path), "Font1");
  const std::string before = folder.Content(path);
  EXPECT_EQ(WriteXMPGlyphsureSlugToFile(path, Array()), CoreErrorCodes::kSuccess);
  EXPECT_EQ(folder.Content(path), before) << "no array puts nothing";
  EXPECT_EQ(WriteXMPGlyphsureSlugToFile(path, Array::Create()), CoreErrorCodes::kSuccess);
  EXPECT_EQ(SlugOf(path), "");
}

TEST_F(Slug, TellsWhyAFileCannotBeUsed) {
  const Array fonts = Array::Create();
  bool hasSlug = true;
  for (const std::string& path : {std::string(), folder / "absent.psd", folder.Path()}) {
    EXPECT_EQ(ReadXMPGlyphsureSlugFromFile(path, fonts), CoreErrorCodes::kNotFound) << path;
    EXPECT_EQ(WriteXMPGlyphsureSlugToFile(path, Fonts(1)), CoreErrorCodes::kUnknownError) << path;
  }
  EXPECT_EQ(ReadAllXMPFontDataFromFile(Sample("poster.psd"), Array(), Array()), CoreErrorCodes::kNotFound);
  EXPECT_EQ(ReadAllXMPFontDataFromFile("", fonts, hasSlug), CoreErrorCodes::kSuccess);
  EXPECT_FALSE(hasSlug);
}

TEST_F(Slug, OfManyFontsIsCutShortWhereThereIsLittleRoom) {
  const auto sizeOf = [&](int count) {
    const std::string path = WritePacket("", 20'000);
    EXPECT_EQ(WriteXMPGlyphsureSlugToFile(path, Fonts(count)), CoreErrorCodes::kSuccess);
    const std::string content = folder.Content(path);
    return content.find("</x:xmpmeta>") - content.find("<x:xmpmeta");
  };
  const size_t empty =
      folder.Content(WritePacket("", 0)).find("</x:xmpmeta>") - folder.Content(WritePacket("", 0)).find("<x:xmpmeta");
  const std::string path = WritePacket("", (sizeOf(12) + sizeOf(13)) / 2 - empty);
  EXPECT_EQ(WriteXMPGlyphsureSlugToFile(path, Fonts(20)), CoreErrorCodes::kFatalError);
  EXPECT_EQ(SlugOf(path), NamesOf(Fonts(12)));
  EXPECT_TRUE(Traced("WARNING: no room to write Glyphsure data for font 13 of 20."));
  EXPECT_TRUE(folder.Content(path).ends_with("tail"));
}

TEST_F(Slug, IsReadFromStructuresByTheKeysThatItKnows) {
  const std::string path = WritePacket(
      List("v:slug",
           {Struct("<v:PostScriptName>Alpha</v:PostScriptName><v:Unknown>x</v:Unknown><v:OpenType>y</v:OpenType>"),
            Struct("<v:PostScriptName>Beta</v:PostScriptName>"),
            Struct("<v:PostScriptName>Beta</v:PostScriptName><v:Version>2</v:Version>")}) +
          "<v:VelorantGlyphsureSlug>not read beside the array</v:VelorantGlyphsureSlug>",
      4000);
  const Array slug = Array::Create();
  ReadXMPGlyphsureSlugFromFile(path, slug);
  ASSERT_EQ(NamesOf(slug), "Alpha Beta");
  EXPECT_TRUE(slug.At(0).Equals(Record({{"PostScriptName", "Alpha"}, {"OpenType", "y"}})));
  EXPECT_TRUE(slug.At(1).Equals(Record({{"PostScriptName", "Beta"}, {"Version", "2"}}))) << "the richer one stands";
  EXPECT_EQ(WriteXMPGlyphsureSlugToFile(path, slug), CoreErrorCodes::kSuccess);
  EXPECT_EQ(folder.Content(path).find("VelorantGlyphsureSlug>"), std::string::npos) << "a write removes the old form";
  EXPECT_EQ(folder.Content(path).find("OpenType"), std::string::npos);
}

TEST_F(Slug, OfTheOldFormIsRecognisedAndDropped) {
  const std::string start = "&lt;plist version=\"1.0\"&gt;", end = "&lt;/plist&gt;";
  const struct {
    const char* rule;
    std::string text;
    int result;
  } kRows[] = {
      {"a list with a font", start + "&lt;array&gt;&lt;dict/&gt;&lt;/array&gt;" + end, 0},
      {"an empty list", start + "&lt;array/&gt;" + end, -1},
      {"something else", start + "&lt;dict/&gt;" + end, -1},
      {"broken text", "&lt;plist", -1},
  };
  for (const auto& row : kRows) {
    SXMPFiles files;
    SXMPMeta meta;
    const std::string packet = WritePacket("<v:VelorantGlyphsureSlug>" + row.text + "</v:VelorantGlyphsureSlug>", 100);
    ASSERT_TRUE(files.OpenFile(packet.c_str(), platform::kXMP_UnknownFile,
                               platform::kXMPFiles_OpenForRead | platform::kXMPFiles_OpenUsePacketScanning));
    files.GetXMP(&meta);
    const Array fonts = Array::Create();
    EXPECT_EQ(GetXMPProperties(meta, fonts), row.result) << row.rule;
    EXPECT_EQ(fonts.Count(), 0u) << row.rule;
  }
}

TEST_F(Slug, IsMergedWithTheListOfAdobeApplications) {
  const std::string fonts = List("t:Fonts", {Struct("<stFnt:fontName>Alpha</stFnt:fontName>"
                                                    "<stFnt:fontFamily>Al</stFnt:fontFamily>"),
                                             ">no structure", Struct("<stFnt:fontName>Beta</stFnt:fontName>")});
  const std::string slug =
      List("v:slug", {Struct("<v:PostScriptName>Beta</v:PostScriptName><v:Version>2</v:Version>")});
  const struct {
    std::string properties, names;
    bool hasSlug;
  } kRows[] = {{fonts, "Alpha Beta", false}, {slug, "Beta", true}, {fonts + slug, "Alpha Beta", true}, {"", "", false}};
  for (const auto& row : kRows) {
    const Array merged = Array::Create();
    bool hasSlug = !row.hasSlug;
    EXPECT_EQ(ReadAllXMPFontDataFromFile(WritePacket(row.properties, 100), merged, hasSlug), CoreErrorCodes::kSuccess);
    EXPECT_EQ(NamesOf(merged), row.names);
    EXPECT_EQ(hasSlug, row.hasSlug);
    const Dictionary alpha(merged.At(0)), beta(merged.At(merged.Count() - 1));
    if (row.names.starts_with("Alpha")) {
      EXPECT_EQ(alpha.GetString("AdobeXMPFontData_Family").View(), "Al");
    }
    if (row.hasSlug) {
      EXPECT_EQ(beta.GetString("Version").View(), "2");
    }
  }
  const Array adobe = Array::Create();
  ReadAdobeXMPFontDataFromFile(Sample("brochure.psd"), adobe);
  EXPECT_EQ(NamesOf(adobe), "C059-Bold C059-Roman");
}

TEST_F(Slug, IsAllowedByHostAndExtension) {
  for (const char* row : {"PhotoshopCC2020 /a.PSD /a.psb", "PhotoshopCC2020 /a.b.psd /psd",
                          "IllustratorCC /a.ai /a.psd", "InCopyCC /a.icml /a.ai", "InCopyCC /a.incx /a.psd"}) {
    const Lines words = Words(row);
    MarquineGlobals::IdentifyPluginHostApp(platform::String::FromUTF8(words[0]));
    EXPECT_TRUE(IsXMPAllowedInThisFile(words[1], true)) << row;
    EXPECT_FALSE(IsXMPAllowedInThisFile(words[2], true)) << row;
  }
}

}  // namespace
