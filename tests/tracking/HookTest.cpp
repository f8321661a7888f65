// The order in which the tracker calls a font manager, with batch calls and without.
#include "tracking/Books.h"

using namespace fakes;

namespace {

// Records the calls in short words. Can throw in one of them, refuse, or be a manager without batch calls. Reports each
// font as held.
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
    const std::string name = font.GetString("PostScriptName").Text();
    Note("give back " + name);
    EXPECT_EQ(handle, this);
    return statuses[name];
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

class Hooks : public TrackerFixture {
 protected:
  Hooks() { FontManagerInterface::sm_pFontManager = std::make_unique<RecordingManager>(); }
  RecordingManager& Manager() { return static_cast<RecordingManager&>(*FontManagerInterface::sm_pFontManager); }
  // Returns the calls since the last time.
  std::string Calls() { return std::exchange(Manager().calls, ""); }
  // Registers without opening, as a font manager without batch calls does.
  void Register(const std::string& identifier, const IDs& ids) {
    for (const uint32_t id : ids) {
      const Dictionary match = Matched(agent.Font(id)).GetDictionary("MatchedFont");
      tracker.RegisterFontWithDocument(match, match.GetString("PostScriptName"), id, agent.Font(id).IsActive(),
                                       identifier, &Manager());
    }
  }
};

}  // namespace

TEST_F(Hooks, AreCalledInTheGivenOrder) {
  const struct {
    std::function<int()> step;
    const char* calls;
  } rows[] = {
      {[&] {
         return Open("a", {1, 2, 4});
       },
       "begin a, count 3, activate F1 F2, end, finish a, count 1"},
      {[&] { return tracker.OpenFontsForIdentifier(Array(), "a", false, Array(), Array()); },
       "begin a, finish a, count 1"},
      {[&] {
         return Open("b", {2, 4});
       },
       "begin b, count 2, activate F2, end, finish b, count 1"},
      {[&] { return Close("a"); }, "count 3, states, deactivate F1, end, closed a, count 1"},
      {[&] { return Close("b"); }, "count 2, states, deactivate F2, end, closed b all, count 1"},
      {[&] { return Close("nobody"); }, "closed nobody all, count 1"},
      {[&] {
         return Open("c", {3, 4});
       },
       "begin c, count 2, activate F3, end, finish c, count 1"},
      {[&] { return Close("c", false); }, "count 2, states, deactivate , end, closed c, count 1"},
      {[&] { return Quit(); }, "count 2, states, deactivate F3, end"},
      {[&] { return Manager().refuses = true, Open("d", {1}, Array(), Array::Create()); },
       "begin d, count 1, activate F1, count 1, states, deactivate F1, end, closed d all, count 1, end, finish d, count 1"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.step(), 0) << row.calls;
    EXPECT_EQ(Calls(), row.calls);
  }
}

TEST_F(Hooks, ExceptionsEndTheChangeAndPassOn) {
  showsProgress = true;
  Manager().throwsIn = "activate";
  EXPECT_THROW(Open("a", {1, 2}), std::runtime_error);
  EXPECT_EQ(Calls(), "begin a, count 2, activate F1 F2, end, count 1");
  EXPECT_EQ(Registered("a"), (IDs{1, 2}));
  ExpectBooksRight(tracker);
  Manager().throwsIn = "states";
  EXPECT_THROW(Close("a"), std::runtime_error);
  EXPECT_EQ(Calls(), "count 2, states, end, count 1");
  ExpectBooksRight(tracker, {{1, 1}, {2, 1}});
  Manager().throwsIn = "deactivate";
  EXPECT_THROW(Quit(), std::runtime_error);
  EXPECT_EQ(Calls(), "count 2, states, deactivate F1 F2, end");
  EXPECT_FALSE(HasBooks());
  EXPECT_EQ(ui->TakeShown(), (std::vector<std::string>{"show", "hide", "show", "show"}));
}

TEST_F(Hooks, VectorThatOutlivedAQuitTakesNoFontAway) {
  Open("a", {1});
  Quit();
  tracker.OpenFontsForIdentifier(MatchedFonts(agent, {1}), "b", false, Array(), Array());
  tracker.CloseAllFontsForIdentifier("b", false, false, Array());
  Calls();
  tracker.CloseAllFontsForIdentifier("a", true, false, Array());
  EXPECT_EQ(Calls(), "count 1, states, deactivate , end, closed a, count 1");
}

TEST_F(Hooks, NothingIsCalledWithoutAConnection) {
  Open("a", {1});
  Manager().isConnected = false;
  Calls();
  EXPECT_EQ(Open("a", {1}), kErrorMarquineNotRunning);
  EXPECT_EQ(Close("a"), kErrorMarquineNotRunning);
  EXPECT_EQ(Quit(), kErrorMarquineNotRunning);
  EXPECT_EQ(Calls(), "");
  FontManagerInterface::sm_pFontManager.reset();
  EXPECT_EQ(Open("a", {1}), kErrorMarquineNotRunning);
  EXPECT_EQ(Registered("a"), IDs{1});
}

TEST_F(Hooks, WithoutBatchCallsFontsAreGivenBackOneByOne) {
  Manager().hasBatchCalls = false;
  EXPECT_EQ(Open("a", {1}), 0);
  EXPECT_EQ(Calls(), "begin a, count 1, end, finish a, count 1");
  EXPECT_FALSE(HasBooks());

  Register("a", {1, 4, 3});
  Register("b", {3});
  Manager().statuses["F1"] = -7;
  const Array givenBack = Array::Create();
  EXPECT_EQ(Close("a", true, givenBack), -7);
  EXPECT_EQ(Calls(), "count 3, states, give back F1, end, closed a, count 1");
  EXPECT_EQ(NamesOf(givenBack), "");
  EXPECT_EQ(Close("b", true, givenBack), 0);
  EXPECT_EQ(NamesOf(givenBack), "F3");

  // A lost agent ends the loop. The remaining fonts wait for the quit, which reports the last error.
  Register("c", {1, 2, 3});
  Manager().statuses = {{"F1", kErrorMarquineNotRunning}, {"F2", -5}};
  Calls();
  EXPECT_EQ(tracker.CloseAllFontsForIdentifier("c", true, false, Array()), kErrorMarquineNotRunning);
  EXPECT_EQ(Calls(), "count 3, states, give back F1, end, closed c all, count 1");
  Manager().statuses["F1"] = -3;
  EXPECT_EQ(Quit(), -5);
  EXPECT_EQ(Calls(), "count 3, states, give back F1, give back F2, give back F3, end");
  EXPECT_FALSE(HasBooks());
}
