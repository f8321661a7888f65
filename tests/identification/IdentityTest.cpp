// Exact identity by the slug's data, and by data that an Adobe application wrote.
#include <gtest/gtest.h>

#include "Identification/FontMatching.h"
#include "support/Records.h"

using namespace GlyphsureSupport;
using namespace fakes;
using platform::Dictionary;

namespace {

Dictionary Candidate(const char* changes = "") {
  const Dictionary names = Changed(Named("Sans-Bold"), "FontKind=TrueType|Family=Sans|Foundry=URW|Version=1.05");
  return Changed(Changed(names,
                         "PrinterFont=SansBold|Glyphsure_1.2_Checksum=77|Checksum=55|KerningChecksum=33|"
                         "OutlineFileSize=9000"),
                 changes);
}

struct IdentityRow {
  const char* why;
  const char* source;     // in addition to the kind
  const char* candidate;  // the changes to it
  bool expected;
};

const IdentityRow kIdentityRows[] = {
    {"kind alone", "", "", false},
    {"two keys that agree", "PostScriptName=Sans-Bold", "", false},
    {"three keys", "PostScriptName=sans-bold|Family= SANS ", "", true},
    {"keys without a say do not count", "Path=/a|Keywords=k|OutlineFileName=x", "", false},
    {"an empty one counts and breaks nothing", "PostScriptName=Sans-Bold|Foundry= ", "", true},
    {"an empty one of the candidate too", "PostScriptName=Sans-Bold|Foundry=X", "Foundry= ", true},
    {"the candidate lacks the key", "PostScriptName=Sans-Bold|Foundry=URW", "Foundry=", false},
    {"kind", "PostScriptName=Sans-Bold|Family=Sans", "FontKind=Postscript", false},
    {"family", "PostScriptName=Sans-Bold|Family=Sans2", "", false},
    {"name", "PostScriptName=Sans|Family=Sans", "", false},
    {"foundry", "PostScriptName=Sans-Bold|Foundry=X", "", false},
    {"version as text", "PostScriptName=Sans-Bold|Version=1.050", "", false},
    {"printer font", "PostScriptName=Sans-Bold|PrinterFont=X", "", false},
    {"file size as text", "PostScriptName=Sans-Bold|OutlineFileSize=09000", "", false},
    {"kerning", "PostScriptName=Sans-Bold|KerningChecksum=34", "", false},
    {"kerning of 0 says nothing", "PostScriptName=Sans-Bold|KerningChecksum=0", "", true},
    {"a checksum proves, what follows is not looked at",
     "Family=Sans|Glyphsure_1.2_Checksum=77|Checksum=1|KerningChecksum=2|OutlineFileSize=3", "", true},
    {"the older checksum proves too", "Family=Sans|Checksum=55|KerningChecksum=2", "", true},
    {"a proof does not spare what stands before it", "Family=Other|Foundry=URW|Glyphsure_1.2_Checksum=77", "", false},
    {"a proof does not make three keys of two", "Glyphsure_1.2_Checksum=77", "", false},
    {"a newer checksum of 0 leaves it to the older", "Family=Sans|Glyphsure_1.2_Checksum=0|Checksum=56", "", false},
    {"the candidate's is 0", "Family=Sans|Glyphsure_1.2_Checksum=1|Checksum=55", "Glyphsure_1.2_Checksum=0", true},
    {"and leaves it to the older", "Family=Sans|Glyphsure_1.2_Checksum=1|Checksum=56", "Glyphsure_1.2_Checksum=0",
     false},
    {"the candidate lacks the checksum", "Family=Sans|Checksum=55", "Checksum=", false},
    {"checksums are numbers of 32 bits", "Family=Sans|Glyphsure_1.2_Checksum= 4294967373", "", true},
    {"negative as well", "Family=Sans|Checksum=-1", "Checksum=4294967295", true},
};

}  // namespace

TEST(PerfectMatch, DecidesKeyByKey) {
  for (const IdentityRow& row : kIdentityRows) {
    const Dictionary source = Changed(Record({{"FontKind", "truetype"}}), row.source);
    EXPECT_EQ(IsPerfectMatch(source, Candidate(row.candidate)), row.expected) << row.why;
  }
  EXPECT_FALSE(IsPerfectMatch(Dictionary(), Candidate()));
  EXPECT_FALSE(IsPerfectMatch(Candidate(), Dictionary()));
}

namespace {

Dictionary FromAdobe(const std::string& changes = "") {
  const Dictionary names = Changed(Named("SANS-bold"), "AdobeXMPFontData_Family=sans|AdobeXMPFontData_Type=TrueType");
  return Changed(Changed(names, "AdobeXMPFontData_VersionString=Version 1.05;PS 1;hotconv 1.06"), changes);
}

}  // namespace

TEST(XMPMatch, NeedsAllFour) {
  const IdentityRow rows[] = {
      {"all agree", "", "", true},
      {"name", "PostScriptName=Sans", "", false},
      {"family", "AdobeXMPFontData_Family=Serif", "", false},
      {"family missing", "", "Family=", false},
      {"version behind the semicolon", "", "Version=1.06", false},
      {"version keeps case", "", "Version=version 1.05", false},
      {"part of the version", "", "Version=1.0", true},
      {"no version", "", "Version=", false},
      {"no XMP version", "AdobeXMPFontData_VersionString=", "", false},
      {"no kind", "", "FontKind=", false},
  };
  for (const IdentityRow& row : rows) {
    EXPECT_EQ(IsXMPMatch(FromAdobe(row.source), Candidate(row.candidate)), row.expected) << row.why;
  }
  Dictionary unversioned = Candidate();
  unversioned.Set("Version", "");
  EXPECT_TRUE(IsXMPMatch(FromAdobe(), unversioned)) << "an empty version stands in every other";
  EXPECT_FALSE(IsXMPMatch(FromAdobe(), Dictionary()));
}

TEST(XMPMatch, TypesAcceptTheKindsOfTheTable) {
  const char* kinds[] = {"OpenType - PS", "OpenType - TT", "TrueType", "Postscript", "PostScript - MM"};
  // The kinds that each type accepts.
  const std::pair<const char*, const char*> rows[] = {
      {"Open Type", "++---"}, {"truetype", "-++--"},   {"Type 1", "---+-"},   {"TYPE 2", "---+-"},
      {"Type 3", "---+-"},    {"PostScript", "---+-"}, {"OpenType", "-----"}, {"Type 4", "-----"},
  };
  for (const auto& [type, accepted] : rows) {
    const Dictionary source = FromAdobe(std::string("AdobeXMPFontData_Type=") + type);
    for (size_t i = 0; i < std::size(kinds); ++i) {
      const Dictionary candidate = With(Candidate(), {{"FontKind", kinds[i]}});
      EXPECT_EQ(IsXMPMatch(source, candidate), accepted[i] == '+') << type << " and " << kinds[i];
    }
  }
}

TEST(XMPMatch, OnlyOneReplacementMayMatch) {
  const Dictionary other = Candidate("Family=Serif");
  Dictionary match = other;
  EXPECT_FALSE(AdobeXMPMatchesExactlyOnePossibleReplacement(FromAdobe(), ArrayOf({other}), &match));
  EXPECT_FALSE(match);
  EXPECT_TRUE(AdobeXMPMatchesExactlyOnePossibleReplacement(FromAdobe(), ArrayOf({other, Candidate()}), &match));
  EXPECT_TRUE(match.Equals(Candidate()));
  EXPECT_FALSE(AdobeXMPMatchesExactlyOnePossibleReplacement(FromAdobe(), ArrayOf({Candidate(), Candidate()}), &match));
  EXPECT_FALSE(match);
}
