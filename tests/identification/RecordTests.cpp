// Making, filtering, repairing and renaming font records.
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
  ASSERT_TRUE(record);
  EXPECT_EQ(record.Count(), 0u);
  record.Set(kGS_KindKey, "TrueType");
  EXPECT_EQ(record.GetString(kGS_KindKey).View(), "TrueType");
  EXPECT_TRUE(
      CreateGlyphsureDictionaryWithFamilyName(String::FromUTF8("Nimbus")).Equals(Record({{"Family", "Nimbus"}})));
}

TEST(FontRecords, KeyTableKeepsTheKindsAtItsEnd) {
  EXPECT_EQ(std::size(kAllGlyphsureCFKeys), 34u);
  EXPECT_EQ(kAllGlyphsureCFKeys[30], "OpenType");
  EXPECT_EQ(kAllGlyphsureCFKeys[32], "TrueType");
  EXPECT_EQ(kAllGlyphsureCFKeys[33].data(), nullptr);
}

TEST(FontRecords, OnlyWhatDescribesTheFontIsSluggable) {
  Dictionary record =
      Record({{"Family", "F"}, {"Path", "/f"}, {"DatabaseID", "7"}, {"Odd", "x"}, {"OutlineFileSize", "9"}});
  record.Set(kGS_MatchedFontKey, Named("F"));
  const Array fonts = ArrayOf({record, platform::Value(), Named("G")});
  EXPECT_TRUE(RemoveUnsluggableGlyphsureKeys(fonts));
  EXPECT_TRUE(record.Equals(Record({{"Family", "F"}, {"OutlineFileSize", "9"}})));
  EXPECT_FALSE(RemoveUnsluggableGlyphsureKeys(fonts));
  size_t sluggable = 0;
  for (const std::string_view key : kAllGlyphsureCFKeys) sluggable += IsSluggableKey(key);
  EXPECT_EQ(sluggable, 10u);
}

TEST(FontRecords, SlugTravelsAsAPropertyList) {
  String xml;
  EXPECT_EQ(CreateXMLGlyphsureSlug(Array(), &xml), kErrorBadArgument);
  EXPECT_EQ(CreateXMLGlyphsureSlug(ArrayOf({}), nullptr), kErrorBadArgument);
  const Array fonts = ArrayOf({Record({{"PostScriptName", "Änders & <b>"}, {"Version", "1.0"}})});
  ASSERT_EQ(CreateXMLGlyphsureSlug(fonts, &xml), 0);
  EXPECT_TRUE(platform::ParseXMLPropertyList(xml.View()).value.Equals(fonts));
  // What has no XML form stores nothing and is no error.
  String untouched;
  EXPECT_EQ(CreateXMLGlyphsureSlug(ArrayOf({platform::Value()}), &untouched), 0);
  EXPECT_FALSE(untouched);
}

TEST(FontRecords, ChecksumsAreRepaired) {
  const struct {
    const char* why;
    Dictionary record;
    const char* key;
    const char* expected;
    bool changes;
  } rows[] = {
      {"0 takes the newer one", Record({{"Glyphsure_1.2_Checksum", "77"}, {"Checksum", "0"}}), "Checksum", "77", true},
      {"missing takes the newer one", Record({{"Glyphsure_1.2_Checksum", "77"}}), "Checksum", "77", true},
      {"one of its own stays", Record({{"Glyphsure_1.2_Checksum", "77"}, {"Checksum", "5"}}), "Checksum", "5", false},
      {"no newer one", Record({{"Checksum", "0"}}), "Checksum", "0", false},
      {"newer one is 0", Record({{"Glyphsure_1.2_Checksum", "0"}, {"Checksum", ""}}), "Checksum", "", false},
      {"0 as text only", Record({{"Glyphsure_1.2_Checksum", "00"}, {"Checksum", "0"}}), "Checksum", "00", true},
      {"largest kerning", Record({{"KerningChecksum", "1048575"}}), "KerningChecksum", "1048575", false},
      {"too large kerning", Record({{"KerningChecksum", "1048576"}}), "KerningChecksum", "0", true},
      {"negative kerning", Record({{"KerningChecksum", "-1"}}), "KerningChecksum", "0", true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FixGlyphsureChecksumsIfNeeded(row.record), row.changes) << row.why;
    EXPECT_EQ(row.record.GetString(row.key).View(), row.expected) << row.why;
  }
}

TEST(FontRecords, KindsAreMappedBothWays) {
  const struct {
    const char* old;
    const char* current;
    bool isAtEveryExtent;
    bool hasWayBack;
  } rows[] = {{"pS pair", "Postscript", true, true},
              {"PS MM", "PostScript - MM", false, true},
              {"OpenType (TT)", "OpenType - TT", false, true},
              {"OpenType (PS)", "OpenType - PS", false, true},
              {"DFont", "TrueType", false, false},
              {"Bitmap", "Bitmap", true, true}};
  for (const auto& row : rows) {
    const String old = String::FromUTF8(row.old), current = String::FromUTF8(row.current);
    EXPECT_EQ(MapTypecellarFontTypeToMarquineFontType(old, kFullMapping).View(), row.current);
    const char* restricted = row.isAtEveryExtent ? row.current : row.old;
    EXPECT_EQ(MapTypecellarFontTypeToMarquineFontType(old, kPairMappingOnly).View(), restricted);
    const std::string back = MapMarquineFontTypeToTypecellarFontType(current, kFullMapping).Text();
    EXPECT_TRUE(AreEqualTexts(back, row.hasWayBack ? row.old : row.current)) << back;
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
  const Dictionary record = Record({{"FontKind", "PS Pair"}, {"Foundry", "unknown"}, {"Glyphsure_1.2_Checksum", "8"}});
  EXPECT_FALSE(PostProcessSingleFontForSlug(record));
  EXPECT_EQ(record.GetString("FontKind").View(), "PS Pair");
  Connect();
  PostProcessGlyphsureSlug(ArrayOf({platform::Value(), record, Named("Bare")}));
  EXPECT_TRUE(record.Equals(
      Record({{"FontKind", "Postscript"}, {"Foundry", "--"}, {"Glyphsure_1.2_Checksum", "8"}, {"Checksum", "8"}})));
  EXPECT_EQ(TracedLines("Entry "), std::vector<std::string>{"Entry 1 modified by PostProcessSingleFontForSlug()"});
}
