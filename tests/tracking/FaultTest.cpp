// The tracker with an agent that throws, is killed, and calls back into it; and a long random walk.
#include <cstdlib>
#include <iostream>
#include <random>

#include "Identification/FontClassification.h"
#include "tracking/Books.h"

using namespace fakes;
using platform::Array;
using platform::Dictionary;

namespace {

class Faults : public TrackerFixture {
 protected:
  Faults() {
    Connect();
    platform::SetTraceSink(nullptr, nullptr);
  }
  // Runs once, inside the agent's next call of this function.
  void Inside(AgentFunction function, std::function<void()> action) {
    agent.onCall = [this, function, action = std::move(action)](AgentFunction called) {
      if (called != function) return;
      const auto once = action;
      agent.onCall = nullptr;
      once();
    };
  }
};

}  // namespace

// Runs the whole life of a tracker once for each call of the agent, which throws.
TEST_F(Faults, ExceptionInEveryAgentCallInTurn) {
  const std::pair<const char*, IDs> steps[] = {{"a", {1, 2, 4}}, {"b", {2, 3}}, {"a", {}},
                                               {"c", {1, 4}},    {"b", {}},     {"c", {}}};  // no fonts: closed
  bool hasThrown = true;
  int thrower = 0;
  for (; hasThrown; ++thrower) {
    FontActivationTracker life(ui->interface.get());
    for (auto& [id, font] : agent.fonts) font.isHeld = false;
    int calls = 0;
    hasThrown = false;
    agent.onCall = [&](AgentFunction) {
      if (calls++ != thrower) return;
      hasThrown = true;
      throw std::runtime_error("agent");
    };
    std::map<uint32_t, uint32_t> leftBehind;
    bool isCutShort = false;  // deactivating failed: only then can a font stay with the agent
    for (const auto& [document, ids] : steps) {
      const IDs registered = ids.empty() ? life.GetDocumentsForTesting().at(document).fontIDs : IDs();
      const int before = calls;
      try {
        if (ids.empty()) {
          life.CloseAllFontsForIdentifier(document, true, false, Array());
        } else {
          life.OpenFontsForIdentifier(MatchedFonts(agent, ids), document, false, Array(), Array::Create());
        }
      } catch (const std::runtime_error&) {
        // A close first gets the states, before it decrements anything. Before its next call everything is decremented.
        const bool isFirstCall = calls == before + 1;
        isCutShort = ids.empty() && !isFirstCall;
        if (isFirstCall) {
          for (const uint32_t id : registered) ++leftBehind[id];
        }
      }
      ExpectBooksRight(life, leftBehind);
    }
    isCutShort |= !hasThrown;  // from now on exceptions are thrown in the quit
    try {
      life.CloseAllFonts(true, false);
    } catch (const std::runtime_error&) {
    }
    EXPECT_TRUE(life.GetFontsForTesting().empty());
    if (!isCutShort) {
      EXPECT_EQ(HeldFonts(agent), IDs{}) << "call " << thrower;
    }
    EXPECT_TRUE(agent.Font(4).IsActive());
    agent.onCall = nullptr;
  }
  EXPECT_GE(thrower, 13) << "opens, closes and the quit call the agent at least so often";
}

TEST_F(Faults, CloseWhileAnOpenIsInProgress) {
  for (const char* closed : {"before", "opening"}) {
    SCOPED_TRACE(closed);
    Open("before", {1, 2});
    Inside(AgentFunction::ActivateFonts, [&] { Close(closed); });
    Open("opening", {2, 3});
    Close("before");
    Close("opening");
    Quit();
    for (auto& [id, font] : agent.fonts) font.isHeld = false;
  }
}

TEST_F(Faults, OpenAndCloseWhileACloseIsInProgress) {
  Open("a", {1, 2});
  Open("b", {2, 3});
  Inside(AgentFunction::DeactivateFonts, [&] {
    Close("a");
    Close("b");
    Open("a", {2});
  });
  Close("a");
  EXPECT_EQ(Registered("a"), IDs{2}) << "what was opened meanwhile stays";
  EXPECT_TRUE(agent.Font(2).isHeld);
  EXPECT_EQ(Close("a"), 0);
  EXPECT_EQ(HeldFonts(agent), IDs{});
}

namespace {

// Actions of a user with documents over a long time, in an order that a seed decides.
class RandomWalk {
 public:
  RandomWalk(FakeAgent& agent, FakeUIFramework& ui, unsigned seed)
      : agent_(agent), ui_(ui), tracker_(*MarquineGlobals::GetSharedFontActivationTracker()), random_(seed) {
    agent_.fonts.clear();
    for (uint32_t id = 1; id <= 24; ++id) {
      agent_.Add({.id = id,
                  .postScriptName = "Font" + std::to_string((id + 1) / 2),
                  .version = std::to_string(id % 3 + 1) + ".0",
                  .familyID = id / 8 + 1,
                  .ownState = id % 7 == 0    ? 4
                              : id % 11 == 0 ? 5
                                             : 0});
    }
    ui_.preferences["CloseFontsOnHostAppQuit"] = 1;
  }

  void Step() {
    if (agent_.isGone && Chance(3)) agent_.isGone = false;
    const size_t kind = Below(10);
    if (kind < 4) {
      Open();
    } else if (kind < 6) {
      Save();
    } else if (kind < 9) {
      Close();
    } else if (Chance(2)) {
      agent_.Kill(Chance(2));
    } else {
      UserActivates();
    }
    ExpectBooksRight(tracker_);
    for (const uint32_t id : OursActive()) {
      const auto found = tracker_.GetFontsForTesting().find(id);
      const bool willBeGivenBack = found != tracker_.GetFontsForTesting().end() && !found->second.bWasAlreadyActive;
      EXPECT_TRUE(willBeGivenBack) << "font " << id << " after a step of kind " << kind;
    }
  }

  // Active only for this client. A font that the user activated may be activated again with its family, because the
  // record of the family's first font does not say that it is active.
  IDs OursActive() const {
    IDs ours;
    for (const uint32_t id : HeldFonts(agent_)) {
      if (agent_.Font(id).ownState == 0) ours.push_back(id);
    }
    return ours;
  }

  void Quit() {
    agent_.isGone = false;
    FontManagerInterface::OnHostAppShuttingDown(false);
  }

 private:
  size_t Below(size_t limit) { return random_() % limit; }
  bool Chance(size_t oneIn) { return Below(oneIn) == 0; }
  FakeFont& AnyFont() { return agent_.Font(static_cast<uint32_t>(1 + Below(24))); }

  Array AnyNames() {
    Array names = Array::Create();
    for (size_t count = Below(6); count > 0; --count) names.Append(Named("Font" + std::to_string(1 + Below(13))));
    return names;
  }
  // Returns an open document or a new one; sometimes empty, for a document that only contains others.
  std::string AnyDocument() {
    if (!documents_.empty() && Chance(8)) return "";
    if (documents_.size() >= 6 || (!documents_.empty() && Chance(3))) return documents_[Below(documents_.size())];
    documents_.push_back(FontActivationTracker::GenerateUniqueIdentifier());
    return documents_.back();
  }

  void Open() {
    const Array matched = Array::Create(), problems = Array::Create();
    GlyphsureSupport::ProcessDocumentFontsForAutoActivation(AnyNames(), matched, problems, true, Chance(2), -2,
                                                            nullptr);
    const std::string identifier = AnyDocument();
    if (identifier.empty()) AddSubDocuments(matched);
    ui_.preferences["ActivateEntireFamilies"] = Chance(5);
    FakeFont &failing = AnyFont(), &refusing = AnyFont();
    failing.fails = Chance(4);
    refusing.isRefused = Chance(4);
    tracker_.OpenFontsForIdentifier(matched, identifier, Chance(2), Array(), Chance(2) ? Array::Create() : Array());
    failing.fails = refusing.isRefused = false;
  }
  void AddSubDocuments(const Array& fonts) {
    for (size_t i = 0; i < fonts.Count(); ++i) {
      const std::string inside = documents_[Below(documents_.size())];
      Dictionary(fonts.At(i)).Set("SubDocumentsWithFont", ArrayOf({platform::String::FromUTF8(inside)}));
    }
  }
  void Save() { GlyphsureSupport::AppendGlyphsureDataToFonts(AnyNames(), -2, true, false, Chance(2)); }
  void Close() {
    if (documents_.empty()) return;
    const size_t at = Below(documents_.size());
    tracker_.CloseAllFontsForIdentifier(documents_[at], Chance(2), false, Array());
    documents_.erase(documents_.begin() + static_cast<std::ptrdiff_t>(at));
  }
  void UserActivates() {
    FakeFont& font = AnyFont();
    if (!font.isHeld) font.ownState = std::max(font.ownState, 4);
  }

  FakeAgent& agent_;
  FakeUIFramework& ui_;
  FontActivationTracker& tracker_;
  std::mt19937 random_;
  std::vector<std::string> documents_;
};

// WALK_SEED=4711 repeats a walk.
unsigned WalkSeed() {
  const char* given = std::getenv("WALK_SEED");
  return given ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : std::random_device()();
}

}  // namespace

TEST_F(Faults, RandomWalkGivesBackItsOwnAndNothingElse) {
  constexpr int kSteps = 10000;
  const unsigned seed = WalkSeed();
  std::cout << "WALK_SEED=" << seed << std::endl;
  SCOPED_TRACE("WALK_SEED=" + std::to_string(seed));
  RandomWalk walk(agent, *ui, seed);
  for (int i = 0; i < kSteps && !HasFailure(); ++i) {
    agent.calls.clear();
    ui->shown.clear();
    walk.Step();
  }
  std::map<uint32_t, int> own;
  for (const auto& [id, font] : agent.fonts) own[id] = font.ownState;
  walk.Quit();
  EXPECT_EQ(walk.OursActive(), IDs{});
  for (const auto& [id, font] : agent.fonts) EXPECT_EQ(font.ownState, own[id]) << "font " << id;
}
