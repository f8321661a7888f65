// For all tests of the tracker: its invariant, and documents with matched fonts.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "Tracking/FontActivationTracker.h"
#include "support/PluginFixture.h"
#include "support/Records.h"

namespace fakes {

using IDs = std::vector<uint32_t>;

// A font's count is the number of occurrences of its ID in the documents' vectors, plus those that a close left behind
// when an exception ended it.
inline void ExpectBooksRight(const FontActivationTracker& tracker, std::map<uint32_t, uint32_t> leftBehind = {}) {
  std::map<uint32_t, uint32_t> expected = std::move(leftBehind);
  for (const auto& [identifier, document] : tracker.GetDocumentsForTesting()) {
    EXPECT_EQ(document.identifier, identifier);
    for (const uint32_t fontID : document.fontIDs) ++expected[fontID];
  }
  for (const auto& [fontID, info] : tracker.GetFontsForTesting()) {
    EXPECT_EQ(info.nRefCount, expected[fontID]) << "font " << fontID;
    EXPECT_EQ(info.nDatabaseID, fontID);
    EXPECT_TRUE(info.bOpen) << "font " << fontID;
    expected.erase(fontID);
  }
  EXPECT_TRUE(expected.empty()) << "font " << expected.begin()->first << " stands in a vector and not on the books";
}

// Returns a font as the classification returns it, matched with the agent's record.
inline platform::Dictionary Matched(const FakeFont& font) {
  platform::Dictionary match = AgentAnswers::MakeRecord(font);
  match.Set("IsActive", font.IsActive() ? "1" : "0");
  platform::Dictionary element = Named(font.postScriptName);
  element.Set("MatchedFont", match);
  return element;
}

inline platform::Array MatchedFonts(const FakeAgent& agent, const IDs& ids) {
  platform::Array fonts = platform::Array::Create();
  for (const uint32_t id : ids) fonts.Append(Matched(agent.fonts.at(id)));
  return fonts;
}

inline IDs HeldFonts(const FakeAgent& agent) {
  IDs held;
  for (const auto& [id, font] : agent.fonts) {
    if (font.isHeld) held.push_back(id);
  }
  return held;
}

// A tracker with a library of F1 to F4. F4 was active before, by the user.
class TrackerFixture : public PluginFixture {
 protected:
  using Array = platform::Array;
  using Dictionary = platform::Dictionary;

  TrackerFixture() : tracker(ui->interface.get()) {
    for (uint32_t id = 1; id <= 4; ++id) agent.Add({.id = id, .postScriptName = "F" + std::to_string(id)});
    agent.Font(4).ownState = 4;
  }
  ~TrackerFixture() override { EXPECT_TRUE(agent.wronglyDeactivated.empty()); }

  int Open(const std::string& identifier, const IDs& ids, Array activated = Array(), Array refused = Array()) {
    const int result =
        tracker.OpenFontsForIdentifier(MatchedFonts(agent, ids), identifier, showsProgress, activated, refused);
    ExpectBooksRight(tracker);
    return result;
  }
  int Close(const std::string& identifier, bool deactivates = true, Array givenBack = Array()) {
    const int result = tracker.CloseAllFontsForIdentifier(identifier, deactivates, showsProgress, givenBack);
    ExpectBooksRight(tracker);
    return result;
  }
  int Quit() { return tracker.CloseAllFonts(true, showsProgress); }
  IDs Registered(const std::string& identifier) const {
    const auto found = tracker.GetDocumentsForTesting().find(identifier);
    return found == tracker.GetDocumentsForTesting().end() ? IDs() : found->second.fontIDs;
  }
  const FontActivationTracker::FontInfo& Info(uint32_t id) const { return tracker.GetFontsForTesting().at(id); }
  bool HasBooks() const { return !tracker.GetFontsForTesting().empty(); }

  FontActivationTracker tracker;
  bool showsProgress = false;
};

}  // namespace fakes
