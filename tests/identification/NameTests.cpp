// PostScript names: stripping, comparing, shortening, Multiple Master instances.
#include <gtest/gtest.h>

#include "Identification/FontNames.h"
#include "support/Records.h"

using namespace GlyphsureSupport;
using namespace fakes;
using platform::Array;
using platform::String;

TEST(FontNames, NormalisingKeepsLettersAndDigits) {
  const struct {
    const char* name;
    const char* loose;
    const char* strict;
  } rows[] = {
      {"Times New-Roman", "TimesNewRoman", "TimesNewRoman"},
      {"A-B-C", "ABC", "AB"},
      {"A--C", "AC", "A"},
      {"Foo#20Bar", "Foo20Bar", "FooBar"},
      {"Foo#2ABar", "Foo2ABar", "FooABar"},
      {"Grün", "Grn", "Grn"},
      {"-#1", "1", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(GFontToolUtils_StripCharsAndNormalizeString(row.name, false), row.loose);
    EXPECT_EQ(StripIllegalPostScriptCharacters(String::FromUTF8(row.name)).View(), row.strict);
  }
}

TEST(FontNames, IllegalCharactersAreStrippedOnEntry) {
  const auto strip = [](const char* name) {
    return CreateStringStrippingIllegalCharsInPostScriptName(String::FromUTF8(name)).Text();
  };
  EXPECT_EQ(strip(" (A/b)[c]{d} "), "Abcd");
  EXPECT_EQ(strip("<A>%é-_"), "<A>%é-_");
  EXPECT_FALSE(CreateStringStrippingIllegalCharsInPostScriptName(String::FromUTF8("( [] )")));
  EXPECT_FALSE(CreateStringStrippingIllegalCharsInPostScriptName(String()));
}

TEST(FontNames, StricterPassWinsOverAnEarlierEntry) {
  const Array fonts =
      ArrayOf({platform::Value(), Named("Ab-Cd-Ef"), Named("Ab Cd"), Named("Ab-Cd"), Record({{"Family", "x"}})});
  const struct {
    const char* name;
    int expected;
  } rows[] = {{"Ab-Cd", 3}, {"AbCd", 2}, {"Ab/Cd", 2}, {"Ab-Cd-Zz", 1}, {"Ab-CdEf", 1}, {"AbC", -1}, {"", -1}};
  for (const auto& row : rows) {
    size_t index = 99;
    EXPECT_EQ(DoesArrayContainFontWithPostScriptName(fonts, String::FromUTF8(row.name), &index), row.expected >= 0)
        << row.name;
    EXPECT_EQ(index, row.expected >= 0 ? static_cast<size_t>(row.expected) : 99u) << row.name;
  }
  EXPECT_FALSE(DoesArrayContainFontWithPostScriptName(Array(), String::FromUTF8("A")));
  EXPECT_FALSE(DoesArrayContainFontWithPostScriptName(fonts, String()));
}

TEST(FontNames, MultipleMasterAnswersForItsInstances) {
  const Array fonts =
      ArrayOf({Record({{"PostScriptName", "Myr"}, {"FontKind", "TrueType"}}),
               Record({{"PostScriptName", "MyrMM"}, {"FontKind", "postscript - mm"}}),
               Record({{"PostScriptName", "MyrMM_400"}, {"FontKind", "PostScript - Multiple Master"}})});
  const struct {
    const char* name;
    int expected;
  } rows[] = {{"MyrMM_400_600", 1}, {"MyrMM_400", 1}, {"MyrMM", 1}, {"Myr_1", -1}, {"MyrMMX", -1}, {"MyrMM-400", -1}};
  for (const auto& row : rows) {
    size_t index = 99;
    const auto found = GetGlyphsureDictionaryFromArrayWithPostscriptName(fonts, String::FromUTF8(row.name), &index);
    EXPECT_EQ(static_cast<bool>(found), row.expected >= 0) << row.name;
    EXPECT_EQ(index, row.expected >= 0 ? static_cast<size_t>(row.expected) : 99u) << row.name;
  }
}

TEST(FontNames, InstanceNamesResolveToTheirBase) {
  const std::pair<const char*, const char*> rows[] = {
      {"MyriadMM_400_600_", "MyriadMM"},
      {"MyriadMM-It_400_600_", "MyriadMM-It"},
      {"My_riadMM_4_", "My_riadMM"},
      {"MyriadMM-It", ""},
      {"Myriad_400_600", ""},
      {"FooMM-a_", ""},
      {"FooMM-_b", ""},
      {"FooMM-_bc", "FooMM-"},
      {"MM", ""},
  };
  for (const auto& [name, base] : rows) {
    EXPECT_EQ(CreateResolvedMMFontName(String::FromUTF8(name)).View(), base) << name;
    std::string text = name;
    ResolveMMFontString(text);
    EXPECT_EQ(text, *base ? base : name);
    const auto record = Named(name);
    ResolveDictionaryMMFontName(record);
    EXPECT_EQ(record.GetString("PostScriptName").View(), text);
  }
}

// Every name shortens step by step to nothing more; the steps are divided by "|".
TEST(FontNames, AdditionsComeOffStepByStep) {
  const std::pair<const char*, const char*> rows[] = {
      {"ABCDEF+Times", "Times"},
      {"Times-Bold-Italic", "Times-Bold|Times"},
      {"+ Times", " Times|Times"},
      {"Times Bold+x", "Times"},
      {"Times(Bold)", "Times(Bold|Times"},
      {"-Times", ""},
      {"Times", ""},
      {"", ""},
      {"A_B+C", "A"},
      {"A+B+C", "B+C|C"},
      {"Times-", "Times"},
  };
  for (const auto& [name, steps] : rows) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%s", name);
    std::string seen;
    while (PSNameMightHaveCruftAppended(buffer, sizeof buffer, buffer))
      seen += (seen.empty() ? "" : "|") + std::string(buffer);
    EXPECT_EQ(seen, steps) << name;
  }
  char small[4] = "?";
  EXPECT_TRUE(PSNameMightHaveCruftAppended("Times-Bold", sizeof small, small));
  EXPECT_STREQ(small, "Tim");
  EXPECT_FALSE(PSNameMightHaveCruftAppended(nullptr, sizeof small, small));
  EXPECT_FALSE(PSNameMightHaveCruftAppended("A-b", sizeof small, nullptr));
  EXPECT_FALSE(PSNameMightHaveCruftAppended("A-b", 0, small));
  EXPECT_FALSE(PSNameMightHaveCruftAppended("Ab", sizeof small, small));
  EXPECT_STREQ(small, "Tim") << "left as it was";
}
