// Is this database font exactly the font that the document means, and of several, which is the best. Pure functions over
// records, apart from one agent call in the comparison. Main thread only.
#pragma once

#include <cstdint>
#include <string_view>

#include "Identification/FontKeys.h"
#include "platform/Value.h"

namespace GlyphsureSupport {

// Which stage of the comparison put one record before the other.
enum class MatchStage {
  kNone,  // tied
  kActive,
  kNonSystem,
  kAgentState,
  kKindOfDocument,
  kFoundryOfDocument,
  kFormat,
  kAdobe,
  kVersion,
  kTemporary,
  kVault,
};

// The reason in words for a reader of the trace.
const char* DescribeMatchStage(MatchStage stage);

// Negative puts the first record first, positive the second, 0 ties. context is the document's record, or null. stage may be
// null; it receives the stage that decided.
int PickBestMatchCallBack(const platform::Dictionary& first, const platform::Dictionary& second,
                          const platform::Dictionary& context, MatchStage* stage = nullptr);

// Sorts by the comparison, best first, and traces why the first is preferred. Safe with a comparison that is one-sided:
// each pair is compared once, in the order in which the records arrived, and what it says is taken.
void SortByBestMatch(platform::Array candidates, const platform::Dictionary& context);

// source came from a document, candidate from the agent.
bool IsPerfectMatch(const platform::Dictionary& source, const platform::Dictionary& candidate);
bool IsXMPMatch(const platform::Dictionary& source, const platform::Dictionary& candidate);
// True if exactly one candidate matches; outMatch, not null, receives it or else null.
bool AdobeXMPMatchesExactlyOnePossibleReplacement(const platform::Dictionary& source, const platform::Array& candidates,
                                                  platform::Dictionary* outMatch);

// True if the key holds a string that contains the part, ignoring case.
bool KeyValueContains(const platform::Dictionary& record, std::string_view key, std::string_view part);

}  // namespace GlyphsureSupport
