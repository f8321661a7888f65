// Dividing a document's fonts into matched and problem fonts, and finding the records of fonts in use.
#include <algorithm>

#include "Identification/FontClassification.h"
#include "Tracking/FontActivationTracker.h"
#include "support/PluginFixture.h"
#include "support/Records.h"

using namespace GlyphsureSupport;
using namespace fakes;
using platform::Array;
using platform::Dictionary;

namespace {

constexpr int kAll = -2;

class Classification : public PluginFixture {
 protected:
  // Returns the IDs of the matched fonts, in order; "-" for none.
  static std::string MatchesOf(const Array& matched) {
    std::string ids;
    for (size_t i = 0; i < matched.Count(); ++i) {
      const Dictionary match = Dictionary(matched.At(i)).GetDictionary(kGS_MatchedFontKey);
      ids += (i == 0 ? "" : " ") + match.GetString(kGS_DatabaseIDKey).Text();
    }
    return ids;
  }
  int Classify(const Array& fonts, bool pickBestMatch) {
    matched = Array::Create();
    problems = Array::Create();
    return ProcessDocumentFontsForAutoActivation(fonts, matched, problems, true, pickBestMatch, kAll,
                                                 ui->interface.get());
  }

  Array matched, problems;
};

}  // namespace

TEST_F(Classification, OrderOfProof) {
  UseSystemFonts("/usr/share/fonts/truetype/dejavu");
  agent.Add({.id = 1, .postScriptName = "Lone"});
  agent.Add({.id = 11, .postScriptName = "Two", .kind = "TrueType"});
  agent.Add({.id = 12, .postScriptName = "Two"});
  agent.Add({.id = 21, .postScriptName = "Three"});
  agent.Add({.id = 22, .postScriptName = "Three", .version = "9.0"});
  agent.Add({.id = 23, .postScriptName = "Three", .version = "0.5", .ownState = 4});
  agent.Add({.id = 31, .postScriptName = "Exact", .version = "9.0", .checksum = "900"});
  agent.Add({.id = 32, .postScriptName = "Exact", .checksum = "77"});
  agent.Add({.id = 33, .postScriptName = "Exact", .foundry = "Other", .checksum = "77"});
  Connect();
  const char* contradicting = "Version=7|Family=Family";
  const char* slug = "FontKind=OpenType - PS|Glyphsure_1.2_Checksum=77";
  const struct {
    const char* why;
    const char* name;
    const char* data;
    bool pickBestMatch;
    const char* matches;  // no match: a problem font, or in neither list
    int replacements;
  } rows[] = {
      {"bare name, one candidate", "Lone", "", false, "1", 0},
      {"data that contradicts the only candidate", "Lone", contradicting, false, "", 1},
      {"the same with the best match on", "Lone", contradicting, true, "1", 0},
      {"bare name, the active candidate", "Three", "", false, "23", 0},
      {"bare name, none active", "Two", "", false, "", 2},
      {"the same with the best match on", "Two", "", true, "12", 0},
      {"data and an active candidate", "Three", "Version=7", false, "", 3},
      {"identity wins over the newer one", "Exact", slug, true, "32", 0},
      {"identity needs no best match", "Exact", slug, false, "32", 0},
      {"nothing known", "Nowhere", "", true, "", 0},
      {"nothing known, but the system has it", "DejaVuSans", "", true, nullptr, 0},
  };
  for (const auto& row : rows) {
    const Dictionary font = Changed(Named(row.name), row.data);
    EXPECT_EQ(Classify(ArrayOf({font}), row.pickBestMatch), 0) << row.why;
    EXPECT_EQ(MatchesOf(matched), row.matches ? row.matches : "") << row.why;
    EXPECT_EQ(problems.Count(), row.matches && !*row.matches ? 1u : 0u) << row.why;
    const Array offered = font.GetArray(kGS_PossibleReplacementsKey);
    EXPECT_EQ(offered ? static_cast<int>(offered.Count()) : 0, row.replacements) << row.why;
    EXPECT_EQ(static_cast<bool>(offered), row.replacements > 0) << row.why;
  }
  EXPECT_TRUE(Traced("Matched 'Lone' with '/fonts/1/Lone.otf': only candidate"));
  EXPECT_TRUE(Traced("Matched 'Two' with '/fonts/12/Two.otf': best match"));
  EXPECT_TRUE(Traced(
      "Preferred '/fonts/12/Two.otf' over '/fonts/11/Two.otf' for 'Two': OpenType before PostScript before TrueType"));
  EXPECT_TRUE(Traced(
      "Preferred '/fonts/32/Exact.otf' over '/fonts/31/Exact.otf' for 'Exact': perfect match with the document's data"));
}

TEST_F(Classification, UserChoosesAmongTheReplacementsAndTheChoiceIsActivated) {
  agent.Add({.id = 1, .postScriptName = "A", .foundry = "URW", .version = "2.0"});
  agent.Add({.id = 2, .postScriptName = "A", .kind = "TrueType", .foundry = "Other"});
  agent.Add({.id = 3, .postScriptName = "B"});
  agent.Add({.id = 4, .postScriptName = "B"});
  Connect();
  Classify(ArrayOf({Named("A"), Named("B"), Named("Nowhere")}), false);
  ASSERT_EQ(NamesOf(problems), "A B Nowhere");
  EXPECT_EQ(CountMissingFonts(problems), 1);
  Dictionary first(problems.At(0));
  const Array offered = first.GetArray(kGS_PossibleReplacementsKey);
  for (size_t i = 0; i < offered.Count(); ++i) {
    for (const auto key : {kGS_FoundryKey, kGS_VersionKey, kGS_KindKey, kGS_WorkgroupNameKey}) {
      EXPECT_FALSE(Dictionary(offered.At(i)).GetString(key).IsEmpty()) << key;
    }
  }
  first.Set(kGS_MatchedFontKey, offered.At(1));
  EXPECT_FALSE(AllFontsResolved(problems, matched));
  EXPECT_EQ(MatchesOf(matched), "2");
  EXPECT_TRUE(Traced("This font was skipped:  'Nowhere' -- host app's Find Fonts dialog will be displayed"));
  FontActivationTracker tracker(ui->interface.get());
  EXPECT_EQ(tracker.OpenFontsForIdentifier(matched, "doc", false, Array(), Array()), 0);
  EXPECT_TRUE(agent.Font(2).isHeld);
  EXPECT_FALSE(agent.Font(1).isHeld);
}

TEST_F(Classification, EndsWhereItIsTold) {
  EXPECT_EQ(Classify(ArrayOf({Named("A")}), true), kErrorMarquineNotRunning) << "no manager";
  agent.Add({.id = 1, .postScriptName = "A"});
  Connect();
  EXPECT_EQ(Classify(ArrayOf({}), true), 0);
  EXPECT_EQ(Classify(Array(), true), kErrorBadArgument);
  EXPECT_EQ(ProcessDocumentFontsForAutoActivation(ArrayOf({}), Array(), problems, true, true, kAll, nullptr),
            kErrorBadArgument);
  // A font without a name is skipped. A font whose lookup fails is in neither list. The last font's status is the
  // result.
  agent.FailNext(AgentFunction::GetFontsByPostscriptName, 0x01000001);
  EXPECT_EQ(Classify(ArrayOf({platform::Value(), Record({{"Family", "F"}}), Named("A"), Named("A")}), true), 0);
  EXPECT_EQ(MatchesOf(matched), "1");
  EXPECT_EQ(problems.Count(), 0u);
  for (const uint32_t code : {0, 0, 1}) agent.FailNext(AgentFunction::GetFontsByPostscriptName, code);
  EXPECT_EQ(Classify(ArrayOf({Named("A"), Named("A"), Record({{"Family", "F"}})}), true), -1);
  EXPECT_EQ(MatchesOf(matched), "1");
  EXPECT_EQ(problems.Count(), 0u);
  agent.FailNext(AgentFunction::GetFontInfoByID, kErrorMarquineNotRunning);
  EXPECT_EQ(Classify(ArrayOf({Named("A"), Named("A")}), true), kErrorMarquineNotRunning);
  EXPECT_EQ(matched.Count() + problems.Count(), 0u) << "a lost connection ends the walk";
  EXPECT_EQ(ui->TakeShown(), (std::vector<std::string>(4, "hide")));
  agent.onCall = [](AgentFunction function) {
    if (function == AgentFunction::GetFontInfoByID) throw std::runtime_error("the agent's library");
  };
  EXPECT_THROW(Classify(ArrayOf({Named("A")}), true), std::runtime_error);
  EXPECT_EQ(ui->TakeShown(), std::vector<std::string>{"hide"}) << "also when an exception passes";
  EXPECT_TRUE(Traced("Exiting ProcessDocumentFontsForAutoActivation via throw."));
}

TEST_F(Classification, CountsAndLookUps) {
  Dictionary active = Named("A"), inactive = Named("B");
  active.Set(kGS_MatchedFontKey, Record({{"IsActive", "1"}}));
  inactive.Set(kGS_MatchedFontKey, Record({{"IsActive", "0"}}));
  EXPECT_EQ(CountActiveFonts(ArrayOf({active, inactive, active})), 2);
  size_t index = 0;
  const Array fonts = ArrayOf({platform::Value(), Record({{"DatabaseID", "0"}}), Record({{"DatabaseID", "7"}})});
  EXPECT_TRUE(DoesArrayContainFontWithDatabaseID(fonts, 7, &index));
  EXPECT_EQ(index, 2u);
  EXPECT_FALSE(DoesArrayContainFontWithDatabaseID(fonts, 0));
  EXPECT_FALSE(FontRefContainsGlyphsureData(Record({{"PostScriptName", "A"}, {"Path", "/"}})));
  EXPECT_TRUE(FontRefContainsGlyphsureData(Record({{"OutlineFileSize", "1"}})));
  EXPECT_TRUE(FontRefContainsXMPData(Record({{"AdobeXMPFontData_Type", "TrueType"}})));
}

namespace {

class Enriching : public Classification {
 protected:
  Enriching() {
    agent.Add({.id = 1, .postScriptName = "Active", .ownState = 4});
    agent.Add({.id = 2, .postScriptName = "Idle"});
    agent.Add({.id = 3, .postScriptName = "Nimbus-Regular", .family = "Nimbus", .ownState = 4});
    agent.Add({.id = 4, .postScriptName = "Nimbus-Bold", .family = "Nimbus"});
    Connect();
  }
};

}  // namespace

TEST_F(Enriching, OnlyActiveFontsReachASlug) {
  const Array fonts = ArrayOf({Named("Active"), platform::Value(), Named("Idle"), Named("Nowhere")});
  bool hasFailed = true;
  EXPECT_EQ(AppendGlyphsureDataToFonts(fonts, kAll, true, false, false, &hasFailed), 0);
  EXPECT_FALSE(hasFailed);
  EXPECT_EQ(NamesOf(fonts), "Active");
  const Dictionary record(fonts.At(0));
  EXPECT_EQ(record.GetString(kGS_FoundryKey).View(), "Foundry");
  EXPECT_FALSE(record.Contains(kGS_DatabaseIDKey));
  FontManagerInterface::ResetForTesting();
  EXPECT_EQ(AppendGlyphsureDataToFonts(fonts, kAll, true, false, false, &hasFailed), kErrorMarquineNotRunning);
  EXPECT_TRUE(hasFailed);
}

TEST_F(Enriching, FamilySpeaksForANameThatIsNotKnown) {
  const struct {
    bool excludesInactive, triesFamilies;
    const char* expected;
  } rows[] = {{true, true, "Nimbus-Regular"}, {true, false, ""}, {false, true, "Unknown"}};
  for (const auto& row : rows) {
    const Array fonts = ArrayOf({Record({{"PostScriptName", "Unknown"}, {"Family", "Nimbus"}})});
    EXPECT_EQ(AppendGlyphsureDataToFonts(fonts, kAll, row.excludesInactive, true, row.triesFamilies), 0);
    EXPECT_EQ(NamesOf(fonts), row.expected);
  }
  const Dictionary bare = Named("Unknown-Bold");
  AppendGlyphsureDataToFonts(ArrayOf({bare}), kAll, true, true, true);
  EXPECT_EQ(bare.GetString(kGS_FamilyKey).View(), "Unknown") << "the record itself gains the family";
}

TEST_F(Enriching, RecordFoundUnderAnotherNameTakesThePlace) {
  const struct {
    std::vector<const char*> names;
    const char* expected;
  } rows[] = {
      {{"Active-Bold", "ABCDEF+Idle"}, "Idle Active"},
      {{"Idle", "Active-Bold", "Nowhere", "Active-Light", "Idle-Bold"}, "Idle Nowhere Active"},
      {{"Acti ve", "Idle"}, "Idle Active"},
  };
  for (const auto& row : rows) {
    Array fonts = Array::Create();
    for (const char* name : row.names) fonts.Append(Named(name));
    EXPECT_EQ(AppendGlyphsureDataToFonts(fonts, kAll, false, true, false), 0);
    EXPECT_EQ(NamesOf(fonts), row.expected);
    size_t found = 0;
    for (size_t i = 0; i < fonts.Count(); ++i) found += Dictionary(fonts.At(i)).Contains(kGS_DatabaseIDKey);
    EXPECT_EQ(found, 2u) << "all information stays where it is asked for";
  }
}

TEST_F(Enriching, CacheAnswersForActiveFontsWithoutTheAgent) {
  const Array first = ArrayOf({Named("Active")});
  AppendGlyphsureDataToFonts(first, kAll, true, false, false);
  agent.calls.clear();
  const Array again = ArrayOf({Named("Active")});
  AppendGlyphsureDataToFonts(again, kAll, true, false, false);
  EXPECT_TRUE(again.Equals(first));
  EXPECT_EQ(agent.Count("GetFontsByPostscriptName"), 0u);
  AppendGlyphsureDataToFonts(again, kAll, false, false, false);
  EXPECT_GT(agent.Count("GetFontsByPostscriptName"), 0u) << "the cache knows only what is active";
  agent.FailNext(AgentFunction::GetFontsByPostscriptName, 0x01000001);
  EXPECT_NE(AppendGlyphsureDataToFonts(ArrayOf({Named("Active"), Named("Idle")}), kAll, true, false, false), 0)
      << "an answer from the cache is no look-up, so the status of the last one stands";
}

TEST_F(Enriching, LostConnectionEndsTheWalk) {
  const struct {
    bool excludesInactive;
    const char* expected;
  } rows[] = {{false, "Idle Active Nimbus-Regular"}, {true, "Nimbus-Regular"}};
  for (const auto& row : rows) {
    FontDataPreviouslyGottenFromDatabase::DeleteAll();
    const Array fonts = ArrayOf({Named("Idle"), Named("Active"), Named("Nimbus-Regular")});
    for (const uint32_t code : {0, kErrorMarquineNotRunning}) agent.FailNext(AgentFunction::GetFontInfoByID, code);
    bool hasFailed = false;
    EXPECT_EQ(AppendGlyphsureDataToFonts(fonts, kAll, row.excludesInactive, false, false, &hasFailed),
              kErrorMarquineNotRunning);
    EXPECT_TRUE(hasFailed) << "what a document has stored must stay";
    EXPECT_EQ(NamesOf(fonts), row.expected) << "what was not looked up is not known as active";
    const Dictionary found(fonts.At(fonts.Count() - 1));
    EXPECT_EQ(found.GetString(kGS_FoundryKey).View(), "Foundry");
    EXPECT_FALSE(found.Contains(kGS_DatabaseIDKey)) << "the keys of a slug, also then";
    EXPECT_EQ(Dictionary(fonts.At(0)).Count(), row.excludesInactive ? found.Count() : 1u);
  }
}

TEST_F(Enriching, LastFontWithIDsWins) {
  Array found;
  const Dictionary byFamily = Record({{"PostScriptName", "Nowhere"}, {"Family", "Nimbus"}});
  EXPECT_EQ(FindIDsForBestMatches(ArrayOf({Named("Active"), byFamily, Named("Nowhere")}), &found, kAll), 0);
  EXPECT_EQ(NamesOf(found), "Nimbus-Regular Nimbus-Bold");
  EXPECT_EQ(MatchesOf(found), "3 4");
  EXPECT_EQ(FindIDsForBestMatches(ArrayOf({}), &found, kAll), 0);
  EXPECT_EQ(found.Count(), 0u);
}
