// What the tests of the tracker share: its invariant, and documents whose fonts are matched already.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "Tracking/FontActivationTracker.h"
#include "support/FakeAgent.h"
#include "support/Records.h"

namespace fakes {

// A font's count is the number of times its ID stands in the documents' vectors, beside those that a close which an
// exception ended has left behind.
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

// A font as the classification leaves it, matched with the agent's record.
inline platform::Dictionary Matched(const FakeFont& font) {
  platform::Dictionary match = AgentAnswers::MakeRecord(font);
  match.Set("IsActive", font.IsActive() ? "1" : "0");
  platform::Dictionary element = Named(font.postScriptName);
  element.Set("MatchedFont", match);
  return element;
}

inline platform::Array MatchedFonts(const FakeAgent& agent, const std::vector<uint32_t>& ids) {
  platform::Array fonts = platform::Array::Create();
  for (const uint32_t id : ids) fonts.Append(Matched(agent.fonts.at(id)));
  return fonts;
}

inline std::vector<uint32_t> HeldFonts(const FakeAgent& agent) {
  std::vector<uint32_t> held;
  for (const auto& [id, font] : agent.fonts) {
    if (font.isHeld) held.push_back(id);
  }
  return held;
}

}  // namespace fakes
