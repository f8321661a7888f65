// Is this database font exactly the font that the document means, and of several, which is the best. Pure functions over
// records, apart from one agent call in the comparison. Main thread only.
//
// Why a font was taken stands in the trace, in lines of two fixed forms that the front end of a host reads:
//
//   Preferred '<file>' over '<file>' for '<PostScript name>': <words>
//   Matched '<PostScript name>' with '<file>': <words>
//
// The first is written when several candidates were found and names the chosen one and the next best, the second once for
// each font that was matched. The words are those of DescribeMatchStage, or of the classification. A file is the record's
// path, or else its file name, or else "font <ID>"; it may itself hold an apostrophe, so a reader divides the line at
// "' over '", at "' with '", and at the last "' for '" and "': ". The name is that in the document. The last line about a
// name holds.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Identification/FontKeys.h"
#include "platform/Value.h"

namespace GlyphsureSupport {

// Which stage of the comparison put one record before the other, in the order of the stages.
enum class MatchStage {
  kActive,
  kNonSystem,
  kAgentState,
  kKindOfDocument,
  kFoundryOfDocument,
  kFormat,
  kAdobe,
  kHasVersion,
  kVersionNumber,
  kVersionText,
  kTemporary,
  kVault,
  kNone,  // tied
};

// The reason in words for a reader of the trace.
const char* DescribeMatchStage(MatchStage stage);

// Negative puts the first record first, positive the second, 0 ties. context is the document's record, or null. stage may be
// null; it receives the stage that decided.
int PickBestMatchCallBack(const platform::Dictionary& first, const platform::Dictionary& second,
                          const platform::Dictionary& context, MatchStage* stage = nullptr);

// Sorts by the comparison, best first, and traces why the first is preferred to the second. Safe with a comparison that is
// one-sided: the pairs are compared in the order in which the records arrived, and what the comparison says is taken.
void SortByBestMatch(platform::Array candidates, const platform::Dictionary& context);

// The lines above.
void TracePreferred(const platform::Dictionary& chosen, const platform::Dictionary& other, const char* documentName,
                    const char* words);
void TraceMatched(const platform::Dictionary& chosen, const char* documentName, const char* words);

// source came from a document, candidate from the agent.
bool IsPerfectMatch(const platform::Dictionary& source, const platform::Dictionary& candidate);
bool IsXMPMatch(const platform::Dictionary& source, const platform::Dictionary& candidate);
// True if exactly one candidate matches; outMatch, not null, receives it or else null.
bool AdobeXMPMatchesExactlyOnePossibleReplacement(const platform::Dictionary& source, const platform::Array& candidates,
                                                  platform::Dictionary* outMatch);

// True if the key holds a string that contains the part, ignoring case.
bool KeyValueContains(const platform::Dictionary& record, std::string_view key, std::string_view part);
// True if the key holds a string whose integer value is not 0.
bool KeyHasNonZeroValue(const platform::Dictionary& record, std::string_view key);

}  // namespace GlyphsureSupport
