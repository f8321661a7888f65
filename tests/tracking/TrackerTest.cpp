// Which document holds which font, and when a font is activated and deactivated.
#include <set>

#include "tracking/Books.h"

using namespace fakes;

namespace {

class Tracker : public TrackerFixture {
 protected:
  Tracker() { Connect(); }
};

}  // namespace

TEST_F(Tracker, SecondDocumentKeepsFontOpen) {
  EXPECT_EQ(Open("a", {1, 2}), 0);
  EXPECT_EQ(Open("b", {2}), 0);
  EXPECT_EQ(agent.Count("ActivateFonts"), 1u) << "an active font is not activated again";
  const Array givenBack = Array::Create();
  EXPECT_EQ(Close("a", true, givenBack), 0);
  EXPECT_EQ(NamesOf(givenBack), "F1");
  EXPECT_EQ(HeldFonts(agent), IDs{2});
  EXPECT_EQ(Close("b"), 0);
  EXPECT_EQ(HeldFonts(agent), IDs{});
  EXPECT_FALSE(HasBooks());
}

TEST_F(Tracker, FontThatWasActiveBeforeIsNeverGivenBack) {
  Open("a", {4, 2});
  EXPECT_TRUE(Info(4).bWasAlreadyActive);
  size_t alreadyActive = 0;
  EXPECT_EQ(tracker.CountFontsOpenedForIdentifier("a", alreadyActive), 1u);
  EXPECT_EQ(alreadyActive, 1u);
  Open("b", {4, 2, 3});
  EXPECT_EQ(tracker.CountFontsOpenedForIdentifier("b", alreadyActive), 1u) << "those first registered by it";
  EXPECT_EQ(alreadyActive, 0u);
  EXPECT_EQ(tracker.CountFontsRegisteredForIdentifier("b"), 3u);
  EXPECT_EQ(tracker.CountFontsRegisteredForIdentifier("nobody"), 0u);
  Close("a");
  Close("b");
  EXPECT_TRUE(agent.Font(4).IsActive());
  EXPECT_EQ(HeldFonts(agent), IDs{});
}

TEST_F(Tracker, CloseWithoutDeactivationWaitsForTheQuit) {
  Open("a", {1});
  EXPECT_EQ(Close("a", false), 0);
  EXPECT_EQ(HeldFonts(agent), IDs{1});
  Open("b", {1});
  EXPECT_EQ(Info(1).sFirstDocument, "a");
  Close("b", false);
  EXPECT_EQ(Quit(), 0);
  EXPECT_EQ(HeldFonts(agent), IDs{});
  agent.calls.clear();
  EXPECT_EQ(Quit(), 0);
  EXPECT_TRUE(agent.calls.empty()) << "with empty books nobody is asked";
}

TEST_F(Tracker, QuitTakesFontsOfOpenDocumentsWhateverTheirCount) {
  Open("a", {1, 4, 3});
  Open("b", {1});
  agent.Font(3).isHeld = false;  // the agent no longer holds it for this client
  EXPECT_EQ(Quit(), 0);
  EXPECT_EQ(HeldFonts(agent), IDs{});
  EXPECT_TRUE(agent.Font(4).IsActive());
  EXPECT_FALSE(HasBooks());
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
    agent.Font(1).isHeld = false;
    Connect();
    FontActivationTracker& shared = *MarquineGlobals::GetSharedFontActivationTracker();
    shared.OpenFontsForIdentifier(MatchedFonts(agent, {1}), "a", false, Array(), Array());
    row.change();
    FontManagerInterface::OnHostAppShuttingDown(false);
    EXPECT_EQ(agent.Font(1).isHeld, !row.deactivates);
    EXPECT_EQ(FontManagerInterface::sm_pFontManager, nullptr);
    EXPECT_TRUE(shared.GetFontsForTesting().empty());
  }
}

TEST_F(Tracker, AgentThatNoLongerHoldsAFontIsNotAskedToGiveItBack) {
  Open("a", {1, 2});
  agent.Font(1).isHeld = false;
  EXPECT_EQ(Close("a"), 0);
  EXPECT_FALSE(HasBooks());
  EXPECT_TRUE(Traced("Not deactivating 'F1' because it is no longer plugin activated"));
}

TEST_F(Tracker, OneFontOfAPostScriptNameIsActivated) {
  agent.Add({.id = 5, .postScriptName = "F1"});
  agent.Add({.id = 6, .postScriptName = "F2", .ownState = 4});
  Open("a", {1, 5, 6, 2, 1});
  EXPECT_EQ(HeldFonts(agent), IDs{1}) << "5 has the name of one in the batch, 2 that of an active one";
  EXPECT_EQ(Registered("a"), (IDs{1, 5, 6, 2})) << "each ID once in a run";
  EXPECT_FALSE(Info(5).bWasAlreadyActive);
  EXPECT_TRUE(Info(6).bWasAlreadyActive);
  Open("a", {1});
  EXPECT_EQ(Registered("a").size(), 5u) << "again in another run";
  Close("a");
  EXPECT_EQ(HeldFonts(agent), IDs{});
}

TEST_F(Tracker, EmptyIdentifierRegistersUnderTheSubDocuments) {
  const Array fonts = MatchedFonts(agent, {1, 2});
  Dictionary(fonts.At(0))
      .Set("SubDocumentsWithFont", ArrayOf({platform::String::FromUTF8("x"), platform::String::FromUTF8("y")}));
  EXPECT_EQ(tracker.OpenFontsForIdentifier(fonts, "", false, Array(), Array()), 0);
  ExpectBooksRight(tracker);
  EXPECT_EQ(Info(1).nRefCount, 2u);
  EXPECT_EQ(tracker.GetFontsForTesting().count(2), 0u);
  EXPECT_TRUE(Traced("WARNING:  font 1 for document '' has no kGS_SubDocumentsWithFontKey"));
  Close("x");
  EXPECT_EQ(HeldFonts(agent), (IDs{1, 2}));
  Close("y");
  EXPECT_EQ(HeldFonts(agent), IDs{2}) << "nobody holds it, so only the agent can give it back";
}

TEST_F(Tracker, ElementsThatCannotBeOpenedAreSkipped) {
  Dictionary noID = Matched(agent.Font(1)), noName = Matched(agent.Font(2));
  noID.GetDictionary("MatchedFont").Set("DatabaseID", "0");
  noName.GetDictionary("MatchedFont").Remove("PostScriptName");
  const Array fonts = ArrayOf(
      {platform::Value(), platform::String::FromUTF8("x"), Named("Unmatched"), noID, noName, Matched(agent.Font(3))});
  EXPECT_EQ(tracker.OpenFontsForIdentifier(fonts, "a", false, Array(), Array()), 0);
  EXPECT_EQ(Registered("a"), IDs{3});
  EXPECT_TRUE(Traced("...Skipping font with no matched font in dictionary:  PS name \"Unmatched\""));
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
  Open("b", {11});
  EXPECT_EQ(Registered("b"), (IDs{13, 14})) << "the system has the matched font, and the family speaks for it";
  agent.fonts.erase(13);
  agent.fonts.erase(14);
  Open("c", {11});
  EXPECT_EQ(Registered("c"), IDs{11}) << "a family of which nothing is left does not";
  UseSystemFonts("/usr/share/fonts/opentype/urw-base35");
  agent.Add({.id = 21, .postScriptName = "Z003", .family = "Z003", .familyID = 10});
  agent.Add({.id = 22, .postScriptName = "Z003-MediumItalic", .family = "Z003", .familyID = 10});
  Open("d", {22});
  EXPECT_EQ(Registered("d"), IDs{21}) << "a family's name does not make its regular face active";
}

TEST_F(Tracker, RefusalTakesBackTheWholeRun) {
  Open("a", {1});
  agent.Font(3).isRefused = true;
  const Array refused = Array::Create();
  EXPECT_EQ(Open("b", {1, 2, 3}, Array::Create(), refused), 0);
  EXPECT_EQ(NamesOf(refused), "F3");
  EXPECT_EQ(HeldFonts(agent), IDs{1}) << "what another document holds stays";
  EXPECT_EQ(Registered("b"), IDs{});
  EXPECT_EQ(host.missingFontsDialogs, 0);
}

TEST_F(Tracker, FontThatFailsStaysOnTheBooksAndCallsForTheHostsDialog) {
  agent.Font(2).fails = true;
  const Array activated = Array::Create();
  EXPECT_EQ(Open("a", {1, 2, 3}, activated, Array::Create()), 0);
  EXPECT_EQ(NamesOf(activated), "F1 F3");
  EXPECT_EQ(host.missingFontsDialogs, 1);
  EXPECT_EQ(Registered("a").size(), 3u);
  EXPECT_EQ(Close("a"), 0);
  agent.FailNext(AgentFunction::ActivateFonts, 0x01000001);
  EXPECT_EQ(Open("a", {1}), -1);
  EXPECT_EQ(Registered("a"), IDs{1});
}

TEST_F(Tracker, OnlyAnOpenHidesItsProgress) {
  showsProgress = true;
  Open("a", {1});
  EXPECT_EQ(ui->TakeShown(), (std::vector<std::string>{"show", "hide"}));
  Close("a", false);
  Quit();
  EXPECT_EQ(ui->TakeShown(), (std::vector<std::string>{"show", "show"}));
}

TEST_F(Tracker, ManuallyActivatedFontsAreToldApart) {
  UseSystemFonts("/usr/share/fonts/truetype/dejavu");
  agent.Add({.id = 11, .postScriptName = "DejaVuSans", .ownState = 4});
  agent.Add({.id = 12, .postScriptName = "DejaVuSans-Bold", .isHeld = true});  // the agent activated it by itself
  for (const auto& [onlyManually, left] : {std::pair(false, "- F1"), {true, "DejaVuSans-Bold - F1"}}) {
    const Array fonts = ArrayOf({Named("DejaVuSans"), Named("DejaVuSans-Bold"), platform::Value(), Named("F1")});
    FontActivationTracker::RemoveActivatedFonts(fonts, -2, onlyManually);
    EXPECT_EQ(NamesOf(fonts), left);
  }
}

namespace {

class OfflineManager : public CoreAgentInterface {
 public:
  bool IsOnline() override { return false; }
  int GoOnline() override { return ++goneOnline, 0; }
  int goneOnline = 0;
};

// Its agent knows no font.
class SilentManager : public CoreAgentInterface {
 public:
  ActivationStates GetClientFontActivationStates(const FontIDs&) override { return {}; }
};

template <class Manager>
Manager& Use() {
  FontManagerInterface::sm_pFontManager = std::make_unique<Manager>();
  return static_cast<Manager&>(*FontManagerInterface::sm_pFontManager);
}

}  // namespace

TEST_F(Tracker, OfflineItAsksOnceForFontsThatAreElsewhere) {
  auto& manager = Use<OfflineManager>();
  agent.Font(2).isLocal = agent.Font(3).isLocal = false;
  const std::vector<std::string> asked{"box SomeFontsOfflineMessage"};
  Open("local", {1});
  EXPECT_EQ(ui->TakeShown(), std::vector<std::string>{});
  ui->button = 2;
  Open("stay", {1, 2, 3});
  EXPECT_EQ(ui->TakeShown(), asked);
  EXPECT_EQ(manager.goneOnline, 0);
  EXPECT_EQ(HeldFonts(agent), (IDs{1, 2, 3})) << "the batch goes on after a no";
  Close("stay");
  ui->button = 1;
  Open("go", {2});
  EXPECT_EQ(ui->TakeShown(), asked);
  EXPECT_EQ(manager.goneOnline, 1);
}

TEST_F(Tracker, AFontOfWhichTheAgentSaysNothingIsGivenBack) {
  Use<SilentManager>();
  Open("a", {1, 2});
  Close("a");
  EXPECT_EQ(HeldFonts(agent), IDs{});
  Open("a", {1, 2});
  Quit();
  EXPECT_EQ(HeldFonts(agent), IDs{});
}

TEST_F(Tracker, FallbackIdentifiersDifferAndARepetitionIsLogged) {
  ui->preferences["EnableLogging"] = 1;
  std::set<std::string> given;
  testing::internal::CaptureStdout();
  for (int i = 0; i < 255; ++i) given.insert(FontActivationTracker::GenerateFallbackIdentifier());
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(given.size(), 255u);
  EXPECT_EQ(given.count(std::string(1, '\0')) + given.count(""), 0u);
  testing::internal::CaptureStdout();
  given.insert(FontActivationTracker::GenerateFallbackIdentifier());
  EXPECT_EQ(given.size(), 255u);
  EXPECT_NE(testing::internal::GetCapturedStdout().find("WARNING: two documents have the identifier"),
            std::string::npos);
}
