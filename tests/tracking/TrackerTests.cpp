// Which document holds which font, and when a font is activated and given back.
#include "Tracking/FontActivationTracker.h"
#include "support/PluginFixture.h"
#include "tracking/Books.h"

using namespace fakes;
using platform::Array;
using platform::Dictionary;
using IDs = std::vector<uint32_t>;

namespace {

class Tracker : public PluginFixture {
 protected:
  Tracker() : tracker(ui->interface.get()) {
    for (uint32_t id = 1; id <= 4; ++id) {
      agent.Add({.id = id, .postScriptName = "Font" + std::to_string(id), .familyID = id <= 2 ? 1u : 2u});
    }
    Connect();
  }
  ~Tracker() override { EXPECT_TRUE(agent.wronglyDeactivated.empty()); }

  int Open(const std::string& identifier, const IDs& ids) {
    return tracker.OpenFontsForIdentifier(MatchedFonts(agent, ids), identifier, false, Array(), Array());
  }
  int Close(const std::string& identifier, bool deactivates = true) {
    const int result = tracker.CloseAllFontsForIdentifier(identifier, deactivates, false, Array());
    ExpectBooksRight(tracker);
    return result;
  }
  IDs Registered(const std::string& identifier) {
    const auto found = tracker.GetDocumentsForTesting().find(identifier);
    return found == tracker.GetDocumentsForTesting().end() ? IDs() : found->second.fontIDs;
  }

  FontActivationTracker tracker;
};

}  // namespace

TEST_F(Tracker, SecondDocumentKeepsFontOpen) {
  EXPECT_EQ(Open("a", {1, 2}), 0);
  EXPECT_EQ(Open("b", {2}), 0);
  EXPECT_EQ(agent.Count("ActivateFonts"), 1u) << "an active font is not activated again";
  EXPECT_EQ(tracker.GetFontsForTesting().at(2).nRefCount, 2u);
  const Array givenBack = Array::Create();
  EXPECT_EQ(tracker.CloseAllFontsForIdentifier("a", true, false, givenBack), 0);
  EXPECT_EQ(NamesOf(givenBack), "Font1");
  EXPECT_EQ(HeldFonts(agent), IDs{2});
  EXPECT_EQ(Close("b"), 0);
  EXPECT_EQ(HeldFonts(agent), IDs{});
  EXPECT_TRUE(tracker.GetFontsForTesting().empty());
}

TEST_F(Tracker, FontThatWasActiveBeforeIsNeverGivenBack) {
  agent.Font(1).ownState = 4;
  Open("a", {1, 2});
  EXPECT_TRUE(tracker.GetFontsForTesting().at(1).bWasAlreadyActive);
  size_t alreadyActive = 0;
  EXPECT_EQ(tracker.CountFontsOpenedForIdentifier("a", alreadyActive), 1u);
  EXPECT_EQ(alreadyActive, 1u);
  EXPECT_EQ(tracker.CountFontsRegisteredForIdentifier("a"), 2u);
  // Fonts first registered by another document do not count.
  Open("b", {1, 2, 3});
  EXPECT_EQ(tracker.CountFontsOpenedForIdentifier("b", alreadyActive), 1u);
  EXPECT_EQ(alreadyActive, 0u);
  EXPECT_EQ(tracker.CountFontsRegisteredForIdentifier("nobody"), 0u);
  Close("a");
  Close("b");
  EXPECT_TRUE(agent.Font(1).IsActive());
  EXPECT_EQ(HeldFonts(agent), IDs{});
}

TEST_F(Tracker, CloseWithoutDeactivationWaitsForTheQuit) {
  Open("a", {1});
  EXPECT_EQ(Close("a", false), 0);
  EXPECT_EQ(HeldFonts(agent), IDs{1});
  EXPECT_EQ(tracker.GetFontsForTesting().at(1).nRefCount, 0u);
  Open("b", {1});
  EXPECT_EQ(tracker.GetFontsForTesting().at(1).nRefCount, 1u);
  EXPECT_EQ(tracker.GetFontsForTesting().at(1).sFirstDocument, "a");
  Close("b", false);
  EXPECT_EQ(tracker.CloseAllFonts(true, false), 0);
  EXPECT_EQ(HeldFonts(agent), IDs{});
  agent.calls.clear();
  EXPECT_EQ(tracker.CloseAllFonts(true, false), 0);
  EXPECT_TRUE(agent.calls.empty()) << "with empty books nobody is asked";
}

TEST_F(Tracker, QuitTakesFontsOfOpenDocumentsWhateverTheirCount) {
  agent.Font(2).ownState = 4;
  Open("a", {1, 2, 3});
  Open("b", {1});
  agent.Font(3).isHeld = false;  // the agent no longer holds it for this client
  EXPECT_EQ(tracker.CloseAllFonts(true, false), 0);
  EXPECT_EQ(HeldFonts(agent), IDs{});
  EXPECT_TRUE(agent.Font(2).IsActive());
  EXPECT_TRUE(tracker.GetFontsForTesting().empty());
  EXPECT_EQ(tracker.GetDocumentsForTesting().size(), 2u);
}

TEST_F(Tracker, QuitFollowsThePreferences) {
  const struct {
    const char* why;
    std::function<void()> change;
    bool deactivates;
  } rows[] = {{"all on", [] {}, true},
              {"preference off", [&] { ui->preferences["CloseFontsOnHostAppQuit"] = 0; }, false},
              {"plug-in off", [&] { ui->preferences["EnablePlugin"] = 0; }, false},
              {"services off", [] { MarquineGlobals::SetPluginServicesEnabled(false); }, false},
              {"logged out", [&] { agent.isStandalone = agent.isLoggedIn = false; }, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.why);
    ui->preferences = {{"EnablePlugin", 1}, {"CloseFontsOnHostAppQuit", 1}};
    agent.isStandalone = agent.isLoggedIn = true;
    for (auto& [id, font] : agent.fonts) font.isHeld = false;
    Connect();
    MarquineGlobals::GetSharedFontActivationTracker()->OpenFontsForIdentifier(MatchedFonts(agent, {1}), "a", false,
                                                                              Array(), Array());
    row.change();
    FontManagerInterface::OnHostAppShuttingDown(false);
    EXPECT_EQ(HeldFonts(agent), row.deactivates ? IDs{} : IDs{1});
    EXPECT_EQ(FontManagerInterface::sm_pFontManager, nullptr);
    EXPECT_TRUE(MarquineGlobals::GetSharedFontActivationTracker()->GetFontsForTesting().empty());
  }
}

TEST_F(Tracker, AgentThatNoLongerHoldsAFontIsNotAskedToGiveItBack) {
  Open("a", {1, 2});
  agent.Font(1).isHeld = false;
  EXPECT_EQ(Close("a"), 0);
  EXPECT_TRUE(tracker.GetFontsForTesting().empty());
  EXPECT_TRUE(Traced("Not deactivating 'Font1' because it is no longer plugin activated"));
}

TEST_F(Tracker, OneFontOfAPostScriptNameIsActivated) {
  agent.Add({.id = 5, .postScriptName = "Font1"});
  agent.Add({.id = 6, .postScriptName = "Font2", .ownState = 4});
  Open("a", {1, 5, 6, 2, 1});
  EXPECT_EQ(HeldFonts(agent), IDs{1}) << "5 has the name of one in the batch, 2 that of an active one";
  EXPECT_EQ(Registered("a"), (IDs{1, 5, 6, 2})) << "each ID once in a run";
  EXPECT_FALSE(tracker.GetFontsForTesting().at(5).bWasAlreadyActive);
  EXPECT_TRUE(tracker.GetFontsForTesting().at(6).bWasAlreadyActive);
  Open("a", {1});
  EXPECT_EQ(tracker.CountFontsRegisteredForIdentifier("a"), 5u) << "again in another run";
  Close("a");
  EXPECT_EQ(HeldFonts(agent), IDs{});
}

TEST_F(Tracker, EmptyIdentifierRegistersUnderTheSubDocuments) {
  const Array fonts = MatchedFonts(agent, {1, 2});
  Dictionary(fonts.At(0))
      .Set("SubDocumentsWithFont", ArrayOf({platform::String::FromUTF8("x"), platform::String::FromUTF8("y")}));
  EXPECT_EQ(tracker.OpenFontsForIdentifier(fonts, "", false, Array(), Array()), 0);
  ExpectBooksRight(tracker);
  EXPECT_EQ(tracker.GetFontsForTesting().at(1).nRefCount, 2u);
  EXPECT_EQ(tracker.GetFontsForTesting().count(2), 0u);
  EXPECT_TRUE(Traced("WARNING:  font 1 for document '' has no kGS_SubDocumentsWithFontKey"));
  Close("x");
  EXPECT_TRUE(agent.Font(1).isHeld);
  Close("y");
  EXPECT_FALSE(agent.Font(1).isHeld);
  EXPECT_TRUE(agent.Font(2).isHeld) << "nobody holds it, so only the agent can give it back";
}

TEST_F(Tracker, ElementsThatCannotBeOpenedAreSkipped) {
  Dictionary noID = Matched(agent.Font(1)), noName = Matched(agent.Font(2));
  noID.GetDictionary("MatchedFont").Set("DatabaseID", "0");
  noName.GetDictionary("MatchedFont").Remove("PostScriptName");
  const Array fonts = ArrayOf(
      {platform::Value(), platform::String::FromUTF8("x"), Named("Unmatched"), noID, noName, Matched(agent.Font(3))});
  EXPECT_EQ(tracker.OpenFontsForIdentifier(fonts, "a", false, Array(), Array()), 0);
  EXPECT_EQ(Registered("a"), IDs{3});
  for (const char* line :
       {"WARNING:  font 0 for document 'a' is NULL", "   ...Error:  Array element at i = 1 is NOT A DICTIONARY!!",
        "...Skipping font with no matched font in dictionary:  PS name \"Unmatched\"",
        "   ...Error:  PostscriptName and/or DatabaseID not found in matched font dict for i = 3"}) {
    EXPECT_TRUE(Traced(line)) << line;
  }
}

TEST_F(Tracker, WholeFamilyIsOpenedWithoutWhatTheSystemHasActive) {
  UseSystemFonts("/usr/share/fonts/truetype/dejavu");
  ui->preferences["ActivateEntireFamilies"] = 1;
  for (const auto& [id, name] :
       {std::pair(11u, "DejaVuSans"), {12u, "DejaVuSans-Bold"}, {13u, "Other"}, {14u, "Another"}}) {
    agent.Add({.id = id, .postScriptName = name, .family = "Mixed", .familyID = 9});
  }
  Open("a", {13});
  EXPECT_EQ(Registered("a"), (IDs{13, 14}));
  EXPECT_EQ(HeldFonts(agent), (IDs{13, 14}));
  // The matched font is left out too when the system has it and the family speaks for it.
  Open("b", {11});
  EXPECT_EQ(Registered("b"), (IDs{13, 14}));
  ExpectBooksRight(tracker);
  // A family of which nothing is left does not: the matched font is opened alone.
  agent.fonts.erase(13);
  agent.fonts.erase(14);
  Open("c", {11});
  EXPECT_EQ(Registered("c"), IDs{11});
}

TEST_F(Tracker, RefusalTakesBackTheWholeRun) {
  Open("a", {1});
  agent.Font(3).isRefused = true;
  const Array activated = Array::Create(), refused = Array::Create();
  EXPECT_EQ(tracker.OpenFontsForIdentifier(MatchedFonts(agent, {1, 2, 3}), "b", false, activated, refused), 0);
  EXPECT_EQ(NamesOf(refused), "Font3");
  EXPECT_EQ(HeldFonts(agent), IDs{1}) << "what another document holds stays";
  EXPECT_EQ(tracker.CountFontsRegisteredForIdentifier("b"), 0u);
  EXPECT_EQ(host.missingFontsDialogs, 0);
  ExpectBooksRight(tracker);
}

TEST_F(Tracker, FontThatFailsStaysOnTheBooksAndCallsForTheHostsDialog) {
  agent.Font(2).fails = true;
  const Array activated = Array::Create();
  EXPECT_EQ(tracker.OpenFontsForIdentifier(MatchedFonts(agent, {1, 2, 3}), "a", false, activated, Array::Create()), 0);
  EXPECT_EQ(NamesOf(activated), "Font1 Font3");
  EXPECT_EQ(host.missingFontsDialogs, 1);
  EXPECT_EQ(tracker.CountFontsRegisteredForIdentifier("a"), 3u);
  EXPECT_EQ(Close("a"), 0);
  agent.FailNext(AgentFunction::ActivateFonts, 0x01000001);
  EXPECT_EQ(Open("a", {1}), -1);
  EXPECT_EQ(tracker.CountFontsRegisteredForIdentifier("a"), 1u);
}

TEST_F(Tracker, ProgressIsShownAndHidden) {
  tracker.OpenFontsForIdentifier(MatchedFonts(agent, {1}), "a", true, Array(), Array());
  tracker.CloseAllFontsForIdentifier("a", false, true, Array());
  tracker.CloseAllFonts(true, true);
  EXPECT_EQ(ui->TakeShown(), (std::vector<std::string>{"show", "hide", "show", "hide", "show", "hide"}));
}

TEST_F(Tracker, ManuallyActivatedFontsAreToldApart) {
  UseSystemFonts("/usr/share/fonts/truetype/dejavu");
  agent.Add({.id = 11, .postScriptName = "DejaVuSans", .ownState = 4});
  agent.Add({.id = 12, .postScriptName = "DejaVuSans-Bold", .isHeld = true});
  const auto left = [](int, bool onlyManually) {
    const Array fonts = ArrayOf({Named("DejaVuSans"), Named("DejaVuSans-Bold"), platform::Value(), Named("Font1")});
    FontActivationTracker::RemoveActivatedFonts(fonts, -2, onlyManually);
    return NamesOf(fonts);
  };
  EXPECT_EQ(left(-2, false), "- Font1");
  EXPECT_EQ(left(-2, true), "DejaVuSans-Bold - Font1") << "the agent activated it by itself";
}

TEST_F(Tracker, IdentifiersAndUnresolvedFonts) {
  EXPECT_NE(FontActivationTracker::GenerateUniqueIdentifier(), FontActivationTracker::GenerateUniqueIdentifier());
  tracker.AddUnresolvedFont("a", "X");
  tracker.AddUnresolvedFont("a", "Y");
  EXPECT_EQ(tracker.GetUnresolvedFonts("a"), (std::vector<std::string>{"X", "Y"}));
  EXPECT_TRUE(tracker.GetUnresolvedFonts("b").empty());
}
