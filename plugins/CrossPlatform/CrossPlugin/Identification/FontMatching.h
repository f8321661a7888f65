// Decides whether a database font is exactly the font that the document means, and which of several is the best. Pure
// functions on records, except for one agent call in the comparison. Main thread only.
//
// The trace says why a font was chosen, in lines of two fixed forms that the host's console parses:
//
//   Preferred '<file>' over '<file>' for '<PostScript name>': <words>
//   Matched '<PostScript name>' with '<file>': <words>
//
// The first names the chosen candidate and the next best; it is written if there are several. The second is written
// once for each matched font. The words are those of DescribeMatchStage or of the classification. A file is the
// record's path, its file name, or "font <ID>". It may contain an apostrophe, so a parser splits the line at "' over
// '", at "' with '", and at the last "' for '" and "': ". The name is the one in the document. The last line about a
// name is the valid one.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Identification/FontKeys.h"
#include "platform/Value.h"

namespace GlyphsureSupport {

// The stage of the comparison that decided, in the order of the stages.
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
  kNone,  // no stage decided
};

// The reason in words, for the trace.
const char* DescribeMatchStage(MatchStage stage);

// Returns a negative number if the first record is better, a positive one if the second is, 0 for a tie. `context` is
// the document's record, or null. `stage` receives the stage that decided; it may be null.
int PickBestMatchCallBack(const platform::Dictionary& first, const platform::Dictionary& second,
                          const platform::Dictionary& context, MatchStage* stage = nullptr);

// Sorts the candidates, the best first, and traces why the first is better than the second. Works with a one-sided
// comparison: it compares pairs in their original order and takes the result as it is.
void SortByBestMatch(platform::Array candidates, const platform::Dictionary& context);

// Trace the lines described above.
void TracePreferred(const platform::Dictionary& chosen, const platform::Dictionary& other, const char* documentName,
                    const char* words);
void TraceMatched(const platform::Dictionary& chosen, const char* documentName, const char* words);

// `source` is the document's record, `candidate` the agent's.
bool IsPerfectMatch(const platform::Dictionary& source, const platform::Dictionary& candidate);
bool IsXMPMatch(const platform::Dictionary& source, const platform::Dictionary& candidate);
// True if exactly one candidate matches. outMatch, which must not be null, receives it, or null.
bool AdobeXMPMatchesExactlyOnePossibleReplacement(const platform::Dictionary& source, const platform::Array& candidates,
                                                  platform::Dictionary* outMatch);

// True if the key holds a string that contains the part, ignoring case.
bool KeyValueContains(const platform::Dictionary& record, std::string_view key, std::string_view part);
// True if the key holds a string whose integer value is not 0.
bool KeyHasNonZeroValue(const platform::Dictionary& record, std::string_view key);

}  // namespace GlyphsureSupport
