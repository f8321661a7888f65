// The order in which the tracker calls a font manager, with batch calls and without.
#include "Tracking/FontActivationTracker.h"
#include "support/PluginFixture.h"
#include "tracking/Books.h"

using namespace fakes;
using platform::Array;
using platform::Dictionary;

namespace {

// Records the calls in short words; can throw in one of them, refuse, or be a manager without batch calls.
class RecordingManager : public FontManagerInterface {
 public:
  bool ConnectedToCoreAgent() override { return hasBatchCalls; }
  bool IsFontManagerConnected() override { return isConnected; }
  void BeginOpeningFontsForDocument(const std::string& identifier) override { Note("begin " + identifier); }
  void FinishOpeningFontsForDocument(const std::string& identifier) override { Note("finish " + identifier); }
  void FinishClosingFontsForDocument(const std::string& identifier, bool allClosed) override {
    Note("closed " + identifier + (allClosed ? " all" : ""));
  }
  int EndActivationChange() override { return Note("end"), 0; }
  void SetCountForLongOperations(int count) override { Note("count " + std::to_string(count)); }
  ActivationStates GetClientFontActivationStates(const FontIDs& ids) override {
    Note("states");
    return FontManagerInterface::GetClientFontActivationStates(ids);
  }
  int ActivateFontsByID(const Array& fonts, const std::string&, void**, Array activated, Array refused,
                        ProgressFunction, void*) override {
    Note("activate " + NamesOf(fonts));
    for (size_t i = 0; i < fonts.Count(); ++i) (refuses ? refused : activated).Append(fonts.At(i));
    return 0;
  }
  int DeactivateFonts(const Array& fonts, void*, Array, ProgressFunction, void*) override {
    return Note("deactivate " + NamesOf(fonts)), 0;
  }
  int DeactivateFont(const Dictionary& font, void* handle) override {
    Note("give back " + font.GetString("PostScriptName").Text());
    EXPECT_EQ(handle, &refuses);
    return statuses.count(font.GetString("PostScriptName").Text()) ? statuses[font.GetString("PostScriptName").Text()]
                                                                   : 0;
  }
  int ActivateFontByID(const Dictionary&, const std::string&, void**) override { return -1; }
  ActivationStates GetFontIsActivated(const Array&) override { return {}; }
  int GetAllWorkgroupsForUser(Array*, bool, bool, bool) override { return -1; }
  int RemoveRemoteFonts(Array) override { return 0; }

  bool hasBatchCalls = true, isConnected = true, refuses = false;
  std::map<std::string, int> statuses;
  std::string throwsIn;
  std::string calls;

 private:
  void Note(const std::string& call) {
    calls += (calls.empty() ? "" : ", ") + call;
    if (!throwsIn.empty() && call.starts_with(throwsIn)) throw std::runtime_error("agent");
  }
};

class Hooks : public PluginFixture {
 protected:
  Hooks() : tracker(ui->interface.get()) {
    FontManagerInterface::sm_pFontManager = std::make_unique<RecordingManager>();
    for (uint32_t id = 1; id <= 3; ++id) agent.Add({.id = id, .postScriptName = "F" + std::to_string(id)});
  }
  RecordingManager& Manager() { return static_cast<RecordingManager&>(*FontManagerInterface::sm_pFontManager); }
  // The calls since the last question.
  std::string Calls() { return std::exchange(Manager().calls, ""); }
  int Open(const std::string& identifier, const std::vector<uint32_t>& ids) {
    return tracker.OpenFontsForIdentifier(MatchedFonts(agent, ids), identifier, false, Array(), Array::Create());
  }
  int Close(const std::string& identifier, bool deactivates) {
    return tracker.CloseAllFontsForIdentifier(identifier, deactivates, false, Array());
  }
  // Registers without opening, as a font manager without batch calls does it.
  void Register(const std::string& identifier, uint32_t id, bool wasActive = false) {
    const Dictionary match = Matched(agent.Font(id)).GetDictionary("MatchedFont");
    tracker.RegisterFontWithDocument(match, match.GetString("PostScriptName"), id, wasActive, identifier,
                                     &Manager().refuses);
  }

  FontActivationTracker tracker;
};

}  // namespace

TEST_F(Hooks, AreCalledInTheGivenOrder) {
  EXPECT_EQ(Open("a", {1, 2}), 0);
  EXPECT_EQ(Calls(), "begin a, count 2, activate F1 F2, end, finish a, count 1");
  EXPECT_EQ(tracker.OpenFontsForIdentifier(Array(), "a", false, Array(), Array()), 0);
  EXPECT_EQ(Calls(), "begin a, finish a, count 1");
  EXPECT_EQ(Open("b", {2}), 0);
  Calls();
  EXPECT_EQ(Close("a", true), 0);
  EXPECT_EQ(Calls(), "count 2, states, deactivate F1, end, closed a, count 1");
  EXPECT_EQ(Close("b", false), 0);
  EXPECT_EQ(Calls(), "count 1, states, deactivate , end, closed b, count 1");
  EXPECT_EQ(Close("nobody", true), 0);
  EXPECT_EQ(Calls(), "closed nobody all, count 1");
  Open("c", {3});
  Calls();
  EXPECT_EQ(Close("c", true), 0);
  EXPECT_EQ(Calls(), "count 1, states, deactivate F3, end, closed c all, count 1");
  EXPECT_EQ(tracker.CloseAllFonts(true, false), 0);
  EXPECT_EQ(Calls(), "count 1, states, deactivate F2, end");
}

TEST_F(Hooks, FontThatWasActiveBeforeIsKeptAlsoWhereTheAgentSaysItIsHeld) {
  agent.Font(2).ownState = 4;
  Open("a", {1, 2});
  Open("b", {2, 3});
  Calls();
  Close("a", true);
  Close("b", true);
  EXPECT_EQ(
      Calls(),
      "count 2, states, deactivate F1, end, closed a, count 1, count 2, states, deactivate F3, end, closed b all, count 1");
  Open("c", {2});
  Calls();
  tracker.CloseAllFonts(true, false);
  EXPECT_EQ(Calls(), "count 1, states, deactivate , end");
}

TEST_F(Hooks, RefusalClosesInsideTheOpen) {
  Manager().refuses = true;
  EXPECT_EQ(Open("a", {1}), 0);
  EXPECT_EQ(
      Calls(),
      "begin a, count 1, activate F1, count 1, states, deactivate F1, end, closed a all, count 1, end, finish a, count 1");
}

TEST_F(Hooks, ExceptionsEndTheChangeAndPassOn) {
  Manager().throwsIn = "activate";
  EXPECT_THROW(Open("a", {1, 2}), std::runtime_error);
  EXPECT_EQ(Calls(), "begin a, count 2, activate F1 F2, end, count 1");
  EXPECT_EQ(tracker.CountFontsRegisteredForIdentifier("a"), 2u);
  ExpectBooksRight(tracker);
  Manager().throwsIn = "states";
  EXPECT_THROW(Close("a", true), std::runtime_error);
  EXPECT_EQ(Calls(), "count 2, states, end, count 1");
  ExpectBooksRight(tracker, {{1, 1}, {2, 1}});
  Manager().throwsIn = "deactivate";
  EXPECT_THROW(tracker.CloseAllFonts(true, false), std::runtime_error);
  EXPECT_EQ(Calls(), "count 2, states, deactivate F1 F2, end");
  EXPECT_TRUE(tracker.GetFontsForTesting().empty());
}

TEST_F(Hooks, NothingIsCalledWithoutAConnection) {
  Open("a", {1});
  Manager().isConnected = false;
  Calls();
  EXPECT_EQ(Open("a", {1}), kErrorMarquineNotRunning);
  EXPECT_EQ(Close("a", true), kErrorMarquineNotRunning);
  EXPECT_EQ(tracker.CloseAllFonts(true, false), kErrorMarquineNotRunning);
  EXPECT_EQ(Calls(), "");
  FontManagerInterface::sm_pFontManager.reset();
  EXPECT_EQ(Open("a", {1}), kErrorMarquineNotRunning);
  EXPECT_EQ(tracker.CountFontsRegisteredForIdentifier("a"), 1u);
}

TEST_F(Hooks, WithoutBatchCallsFontsAreGivenBackOneByOne) {
  Manager().hasBatchCalls = false;
  EXPECT_EQ(Open("a", {1}), 0);
  EXPECT_EQ(Calls(), "begin a, count 1, end, finish a, count 1");
  EXPECT_TRUE(tracker.GetFontsForTesting().empty());

  for (const uint32_t id : {1u, 2u, 3u}) Register("a", id, id == 2);
  Register("b", 3);
  Manager().statuses["F1"] = -7;
  const Array givenBack = Array::Create();
  EXPECT_EQ(tracker.CloseAllFontsForIdentifier("a", true, false, givenBack), -7);
  EXPECT_EQ(Calls(), "count 3, states, give back F1, end, closed a, count 1");
  EXPECT_EQ(NamesOf(givenBack), "");
  ExpectBooksRight(tracker);
  EXPECT_EQ(tracker.CloseAllFontsForIdentifier("b", true, false, givenBack), 0);
  EXPECT_EQ(NamesOf(givenBack), "F3");

  // An agent that is gone ends the loop; the others wait for the quit, where the last error is the one reported.
  for (const uint32_t id : {1u, 2u, 3u}) Register("c", id);
  Manager().statuses = {{"F1", kErrorMarquineNotRunning}, {"F2", -5}};
  Calls();
  EXPECT_EQ(Close("c", true), kErrorMarquineNotRunning);
  EXPECT_EQ(Calls(), "count 3, states, give back F1, end, closed c all, count 1");
  EXPECT_EQ(tracker.GetFontsForTesting().size(), 3u);
  Manager().statuses["F1"] = -3;
  EXPECT_EQ(tracker.CloseAllFonts(true, false), -5);
  EXPECT_EQ(Calls(), "count 3, states, give back F1, give back F2, give back F3, end");
  EXPECT_TRUE(tracker.GetFontsForTesting().empty());
}
