// PostScript names: stripping, comparing, shortening, Multiple Master instances.
#include <gtest/gtest.h>

#include "Identification/FontNames.h"
#include "support/Records.h"

using namespace GlyphsureSupport;
using namespace fakes;
using platform::Array;
using platform::String;

TEST(FontNames, NormalisingKeepsLettersAndDigits) {
  // A name, its loose form and its strict form.
  const char* rows[][3] = {
      {"Times New-Roman", "TimesNewRoman", "TimesNewRoman"},
      {"A-B-C", "ABC", "AB"},
      {"A--C", "AC", "A"},
      {"Foo#20Bar", "Foo20Bar", "FooBar"},
      {"Foo#2ABar", "Foo2ABar", "FooABar"},
      {"Grün", "Grn", "Grn"},
      {"-#1", "1", ""},
  };
  for (const auto& [name, loose, strict] : rows) {
    EXPECT_EQ(GFontToolUtils_StripCharsAndNormalizeString(name, false), loose);
    EXPECT_EQ(StripIllegalPostScriptCharacters(String::FromUTF8(name)).View(), strict);
  }
}

TEST(FontNames, IllegalCharactersAreStrippedOnEntry) {
  const std::pair<const char*, const char*> rows[] = {{" (A/b)[c]{d} ", "Abcd"}, {"<A>%é-_", "<A>%é-_"}};
  for (const auto& [name, bare] : rows) {
    EXPECT_EQ(CreateStringStrippingIllegalCharsInPostScriptName(String::FromUTF8(name)).View(), bare);
  }
  EXPECT_FALSE(CreateStringStrippingIllegalCharsInPostScriptName(String::FromUTF8("( [] )"))) << "null, not empty";
}

TEST(FontNames, StricterPassWinsOverAnEarlierEntry) {
  const Array fonts =
      ArrayOf({platform::Value(), Named("Ab-Cd-Ef"), Named("Ab Cd"), Named("Ab-Cd"), Record({{"Family", "x"}})});
  const std::pair<const char*, size_t> rows[] = {{"Ab-Cd", 3},   {"AbCd", 2}, {"Ab/Cd", 2}, {"Ab-Cd-Zz", 1},
                                                 {"Ab-CdEf", 1}, {"AbC", 99}, {"", 99}};
  for (const auto& [name, expected] : rows) {
    size_t index = 99;
    EXPECT_EQ(DoesArrayContainFontWithPostScriptName(fonts, String::FromUTF8(name), &index), expected != 99) << name;
    EXPECT_EQ(index, expected) << name;
  }
  EXPECT_FALSE(DoesArrayContainFontWithPostScriptName(fonts, String()));
}

TEST(FontNames, MultipleMasterAnswersForItsInstances) {
  const Array fonts =
      ArrayOf({Record({{"PostScriptName", "Myr"}, {"FontKind", "TrueType"}}),
               Record({{"PostScriptName", "MyrMM"}, {"FontKind", "postscript - mm"}}),
               Record({{"PostScriptName", "MyrMM_400"}, {"FontKind", "PostScript - Multiple Master"}})});
  const std::pair<const char*, size_t> rows[] = {{"MyrMM_400_600", 1}, {"MyrMM_400", 1}, {"MyrMM", 1},
                                                 {"Myr_1", 99},        {"MyrMMX", 99},   {"MyrMM-400", 99}};
  for (const auto& [name, expected] : rows) {
    size_t index = 99;
    GetGlyphsureDictionaryFromArrayWithPostscriptName(fonts, String::FromUTF8(name), &index);
    EXPECT_EQ(index, expected) << name;
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
      {"FooMM-_é", ""},  // the last two characters, not bytes
      {"MM", ""},
  };
  for (const auto& [name, base] : rows) {
    std::string text = name;
    ResolveMMFontString(text);
    EXPECT_EQ(text, *base ? base : name);
    const auto record = Named(name);
    ResolveDictionaryMMFontName(record);
    EXPECT_EQ(record.GetString("PostScriptName").View(), text);
  }
}

// Each name is shortened step by step until nothing is left. Each step ends with "|".
TEST(FontNames, AdditionsComeOffStepByStep) {
  const std::pair<const char*, const char*> rows[] = {
      {"ABCDEF+Times", "Times|"},
      {"Times-Bold-Italic", "Times-Bold|Times|"},
      {"+ Times", " Times|Times|"},
      {"Times Bold+x", "Times|"},
      {"Times(Bold)", "Times(Bold|Times|"},
      {"-Times", ""},
      {"", ""},
      {"A_B+C", "A|"},
      {"A+B+C", "B+C|C|"},
      {"Times-", "Times|"},
  };
  char buffer[64];
  for (const auto& [name, steps] : rows) {
    std::snprintf(buffer, sizeof buffer, "%s", name);
    std::string seen, last = name;
    while (PSNameMightHaveCruftAppended(buffer, sizeof buffer, buffer)) {
      last = buffer;
      seen += last + "|";
    }
    EXPECT_EQ(seen, steps) << name;
    EXPECT_EQ(buffer, last) << "left as it was";
  }
  EXPECT_TRUE(PSNameMightHaveCruftAppended("Times-Bold", 4, buffer));
  EXPECT_STREQ(buffer, "Tim");
  EXPECT_FALSE(PSNameMightHaveCruftAppended(nullptr, sizeof buffer, buffer));
  EXPECT_FALSE(PSNameMightHaveCruftAppended("A-b", sizeof buffer, nullptr));
  EXPECT_FALSE(PSNameMightHaveCruftAppended("A-b", 0, buffer));
}
