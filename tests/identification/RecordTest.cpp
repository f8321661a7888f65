// Creating, filtering, repairing and renaming font records.
#include "Identification/FontRecords.h"
#include "platform/PropertyList.h"
#include "support/PluginFixture.h"
#include "support/Records.h"

using namespace GlyphsureSupport;
using namespace fakes;
using platform::Array;
using platform::Dictionary;
using platform::String;

TEST(FontRecords, NullNameMakesAnEmptyRecordThatCanBeUsed) {
  Dictionary record = CreateGlyphsureDictionary(String());
  EXPECT_EQ(record.Count(), 0u);
  record.Set(kGS_KindKey, "TrueType");
  EXPECT_EQ(record.GetString(kGS_KindKey).View(), "TrueType");
}

TEST(FontRecords, OnlyWhatDescribesTheFontIsSluggable) {
  Dictionary record = Changed(Dictionary::Create(), "Family=F|Path=/f|DatabaseID=7|Odd=x|OutlineFileSize=9");
  record.Set(kGS_MatchedFontKey, Named("F"));
  const Array fonts = ArrayOf({record, platform::Value(), Named("G")});
  EXPECT_TRUE(RemoveUnsluggableGlyphsureKeys(fonts));
  EXPECT_TRUE(record.Equals(Record({{"Family", "F"}, {"OutlineFileSize", "9"}})));
  EXPECT_FALSE(RemoveUnsluggableGlyphsureKeys(fonts));
  // Which of the keys that a reader of the slug requests are written. The kinds at the end are requested, too.
  std::string sluggable;
  for (const std::string_view key : kAllGlyphsureCFKeys) sluggable += IsSluggableKey(key) ? '+' : '-';
  EXPECT_EQ(sluggable, std::string(10, '+') + std::string(24, '-'));
  EXPECT_EQ(kAllGlyphsureCFKeys[32], "TrueType");
}

TEST(FontRecords, SlugTravelsAsAPropertyList) {
  String xml;
  EXPECT_EQ(CreateXMLGlyphsureSlug(Array(), &xml), kErrorBadArgument);
  EXPECT_EQ(CreateXMLGlyphsureSlug(ArrayOf({}), nullptr), kErrorBadArgument);
  EXPECT_EQ(CreateXMLGlyphsureSlug(ArrayOf({platform::Value()}), &xml), 0);
  EXPECT_FALSE(xml) << "what has no XML form stores nothing and is no error";
  const Array fonts = ArrayOf({Record({{"PostScriptName", "Änders & <b>"}, {"Version", "1.0"}})});
  ASSERT_EQ(CreateXMLGlyphsureSlug(fonts, &xml), 0);
  EXPECT_TRUE(platform::ParseXMLPropertyList(xml.View()).value.Equals(fonts));
}

TEST(FontRecords, ChecksumsAreRepaired) {
  const std::pair<const char*, const char*> rows[] = {
      {"Glyphsure_1.2_Checksum=77|Checksum=0", "Glyphsure_1.2_Checksum=77|Checksum=77"},
      {"Glyphsure_1.2_Checksum=77", "Glyphsure_1.2_Checksum=77|Checksum=77"},
      {"Glyphsure_1.2_Checksum=77|Checksum=5", ""},
      {"Checksum=0", ""},
      {"Glyphsure_1.2_Checksum=0", ""},
      {"Glyphsure_1.2_Checksum=00|Checksum=0", "Glyphsure_1.2_Checksum=00|Checksum=00"},
      {"KerningChecksum=1048575", ""},
      {"KerningChecksum=1048576", "KerningChecksum=0"},
      {"KerningChecksum=-1", "KerningChecksum=0"},
  };
  for (const auto& [before, after] : rows) {
    const Dictionary record = Changed(Dictionary::Create(), before);
    const bool changes = *after;
    EXPECT_EQ(FixGlyphsureChecksumsIfNeeded(record), changes) << before;
    EXPECT_TRUE(record.Equals(Changed(Dictionary::Create(), changes ? after : before))) << before;
  }
}

TEST(FontRecords, KindsAreMappedBothWays) {
  // An old kind, its result in the full and the restricted mapping, and the result of mapping the former back.
  const char* rows[][4] = {{"pS pair", "Postscript", "Postscript", "PS Pair"},
                           {"PS MM", "PostScript - MM", "PS MM", "PS MM"},
                           {"OpenType (TT)", "OpenType - TT", "OpenType (TT)", "OpenType (TT)"},
                           {"OpenType (PS)", "OpenType - PS", "OpenType (PS)", "OpenType (PS)"},
                           {"DFont", "TrueType", "DFont", "TrueType"},
                           {"Bitmap", "Bitmap", "Bitmap", "Bitmap"}};
  for (const auto& [old, full, restricted, back] : rows) {
    const String kind = String::FromUTF8(old), mapped = MapTypecellarFontTypeToMarquineFontType(kind, kFullMapping);
    EXPECT_EQ(mapped.View(), full);
    EXPECT_EQ(MapTypecellarFontTypeToMarquineFontType(kind, kPairMappingOnly).View(), restricted);
    EXPECT_EQ(MapMarquineFontTypeToTypecellarFontType(mapped, kFullMapping).View(), back);
    const bool isPair = std::string_view(full) == restricted;
    EXPECT_EQ(MapMarquineFontTypeToTypecellarFontType(mapped, kPairMappingOnly).View(), isPair ? back : full);
  }
}

TEST(FontRecords, FoundriesAreRenamedOnlyWhenWrittenInLowerCase) {
  const std::pair<const char*, const char*> rows[] = {
      {"urw++ studio", "Urw++ Studio"}, {"URW", "URW"}, {"Unknown", "--"}, {"uNKNOWN", "--"}, {"Émile", "Émile"}};
  for (const auto& [before, after] : rows) {
    const Dictionary record = Record({{"Foundry", before}, {"FontKind", "DFont"}});
    MapTypecellarNamesToMarquineNames(ArrayOf({record}), kPairMappingOnly);
    EXPECT_EQ(record.GetString("Foundry").View(), before) << "restricted";
    MapTypecellarNamesToMarquineNames(ArrayOf({record}), kFullMapping);
    EXPECT_EQ(record.GetString("Foundry").View(), after);
    EXPECT_EQ(record.GetString("FontKind").View(), "TrueType");
  }
}

class SlugPostProcessing : public PluginFixture {};

TEST_F(SlugPostProcessing, NeedsAFontManager) {
  const Dictionary record = Changed(Dictionary::Create(), "FontKind=PS Pair|Foundry=unknown|Glyphsure_1.2_Checksum=8");
  EXPECT_FALSE(PostProcessSingleFontForSlug(record));
  EXPECT_EQ(record.GetString("FontKind").View(), "PS Pair");
  Connect();
  PostProcessGlyphsureSlug(ArrayOf({platform::Value(), record, Named("Bare")}));
  EXPECT_TRUE(record.Equals(
      Changed(Dictionary::Create(), "FontKind=Postscript|Foundry=--|Glyphsure_1.2_Checksum=8|Checksum=8")));
  EXPECT_EQ(TracedLines("Entry "), std::vector<std::string>{"Entry 1 modified by PostProcessSingleFontForSlug()"});
}
