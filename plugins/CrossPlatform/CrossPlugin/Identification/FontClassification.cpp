#include "Identification/FontClassification.h"

#include <cstdlib>

#include "Bridge/FontManagerInterface.h"
#include "Identification/FontMatching.h"
#include "Identification/FontNames.h"
#include "Identification/FontRecords.h"
#include "Services/DiagnosticLog.h"
#include "Services/VPFInterface.h"
#include "XCore/ECFExtensions/XCFUtils.h"

namespace GlyphsureSupport {

using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

int CountPerfectMatches(const Dictionary& font, const Array& candidates, Dictionary& first) {
  int count = 0;
  for (size_t i = 0; i < candidates.Count(); ++i) {
    const Dictionary candidate(candidates.At(i));
    if (IsPerfectMatch(font, candidate) && ++count == 1) first = candidate;
  }
  return count;
}

Dictionary FirstActive(const Array& candidates) {
  for (size_t i = 0; i < candidates.Count(); ++i) {
    Dictionary candidate(candidates.At(i));
    if (KeyValueContains(candidate, kGS_IsActiveKey, "1")) return candidate;
  }
  return Dictionary();
}

enum class Reason { kNone, kPerfectMatch, kOnlyCandidate, kBestMatch, kAlreadyActive };

const char* WordsOf(Reason reason) {
  switch (reason) {
    case Reason::kNone: break;
    case Reason::kPerfectMatch: return "perfect match with the document's data";
    case Reason::kOnlyCandidate: return "only candidate";
    case Reason::kBestMatch: return "best match";
    case Reason::kAlreadyActive: return "already active";
  }
  return "";
}

// The outcome for a font: a match with its reason, or none.
struct Choice {
  Dictionary match;
  Reason reason = Reason::kNone;
};

// Tries in this order: identity, a single candidate for a record with nothing but a name, the user's preference for the
// best match, and an active font.
Choice Choose(const Dictionary& font, const Array& candidates, bool pickBestMatch) {
  Dictionary perfect;
  if (CountPerfectMatches(font, candidates, perfect) >= 1) return {perfect, Reason::kPerfectMatch};
  if (candidates.Count() == 0) return {};
  if (candidates.Count() == 1 && IsPostScriptNameOnly(font))
    return {Dictionary(candidates.At(0)), Reason::kOnlyCandidate};
  if (pickBestMatch) return {Dictionary(candidates.At(0)), Reason::kBestMatch};
  if (IsPostScriptNameOnly(font)) return {FirstActive(candidates), Reason::kAlreadyActive};
  return {};
}

// The sort traced why the first candidate is the best. This traces that another was chosen, or another reason.
void TraceChoice(const Choice& choice, const Array& candidates, const char* name) {
  const Dictionary best(candidates.At(0));
  const char* const words = WordsOf(choice.reason);
  if (!(choice.match == best)) {
    TracePreferred(choice.match, best, name, words);
  } else if (candidates.Count() > 1 && choice.reason == Reason::kPerfectMatch) {
    TracePreferred(choice.match, Dictionary(candidates.At(1)), name, words);
  }
  TraceMatched(choice.match, name, words);
}

int CategorizeOneFont(Dictionary font, Array& matchedFonts, Array& problemFonts, bool pickBestMatch, int workgroupID) {
  FontManagerInterface* manager = FontManagerInterface::ConnectedManager();
  if (!manager) return kErrorMarquineNotRunning;
  const String name = font.GetString(kGS_PostScriptNameKey);
  Array candidates = Array::Create();
  bool excludedRemote = false;
  const int status = manager->GetGlyphsureData(font, kPostScriptName, excludedRemote, workgroupID, &candidates);
  if (status != 0) return status;
  manager->RemoveRemoteFonts(candidates);
  const Choice choice = Choose(font, candidates, pickBestMatch);
  if (choice.match) {
    TraceChoice(choice, candidates, name.CString());
    font.Set(kGS_MatchedFontKey, choice.match);
    matchedFonts.Append(font);
    return 0;
  }
  if (candidates.Count() == 0 && FontManagerInterface::IsFontActive(name.Text())) {
    OutputIndentedAndFormattedString(0,
                                     "Font '%s' would be reported as missing, but appears to be active.  Must be of a "
                                     "type Marquine does not support.",
                                     name.CString());
    return 0;
  }
  if (candidates.Count() > 0) {
    manager->AddWorkgroupNamesToFonts(candidates);
    font.Set(kGS_PossibleReplacementsKey, candidates);
  }
  problemFonts.Append(font);
  return 0;
}

// Hides the progress at the end of the scope, also after an exception.
class ProgressEnd {
 public:
  ProgressEnd(VPFInterface* progress, TracedCall& traced)
      : progress_(progress), traced_(traced), exceptions_(std::uncaught_exceptions()) {}
  ~ProgressEnd() {
    if (progress_) progress_->HideProgress();
    if (std::uncaught_exceptions() > exceptions_) {
      traced_.End("Exiting ProcessDocumentFontsForAutoActivation via throw.");
    }
  }
  ProgressEnd(const ProgressEnd&) = delete;
  ProgressEnd& operator=(const ProgressEnd&) = delete;

 private:
  VPFInterface* progress_;
  TracedCall& traced_;
  int exceptions_;
};

}  // namespace

int ProcessDocumentFontsForAutoActivation(const Array& allDocumentFonts, Array matchedFonts, Array problemFonts,
                                          bool glyphsureEnabled, bool pickBestMatch, int workgroupID,
                                          VPFInterface* progress) {
  if (!FontManagerInterface::ConnectedManager()) return kErrorMarquineNotRunning;
  if (!allDocumentFonts || !matchedFonts || !problemFonts) return kErrorBadArgument;
  TracedCall traced(
      __func__,
      "Entering ProcessDocumentFontsForAutoActivation() with %d font(s), glyphsureEnabled=%d, pickBestMatch=%d",
      static_cast<int>(allDocumentFonts.Count()), glyphsureEnabled, pickBestMatch);
  const ProgressEnd end(progress, traced);
  int status = 0;
  for (size_t i = 0; i < allDocumentFonts.Count() && status != kErrorMarquineNotRunning; ++i) {
    const Dictionary font(allDocumentFonts.At(i));
    if (!font.GetString(kGS_PostScriptNameKey)) {
      OutputIndentedAndFormattedString(0,
                                       "...Could not get fontName from entry %d in "
                                       "ProcessDocumentFontsForAutoActivation's allDocumentFonts array.",
                                       static_cast<int>(i));
      continue;
    }
    status = CategorizeOneFont(font, matchedFonts, problemFonts, pickBestMatch, workgroupID);
  }
  traced.End(
      "Exiting ProcessDocumentFontsForAutoActivation with %d matchedFonts (%d with Glyphsure data) and %d problemFonts "
      "(%d with Glyphsure data).",
      static_cast<int>(matchedFonts.Count()), CountFontsWithGlyphsureData(matchedFonts),
      static_cast<int>(problemFonts.Count()), CountFontsWithGlyphsureData(problemFonts));
  return status;
}

bool IsPostScriptNameOnly(const Dictionary& record) {
  return record.Count() == 1 && record.Contains(kGS_PostScriptNameKey);
}

namespace {

template <size_t N>
bool HasAny(const Dictionary& record, const std::string_view (&keys)[N]) {
  for (const std::string_view key : keys) {
    if (record.Contains(key)) return true;
  }
  return false;
}

}  // namespace

bool FontRefContainsGlyphsureData(const Dictionary& record) {
  constexpr std::string_view kKeys[] = {kGS_KindKey,     kGS_FamilyKey,          kGS_FoundryKey,
                                        kGS_VersionKey,  kGS_PrinterFontKey,     kGS_Glyphsure_1_2_Key,
                                        kGS_ChecksumKey, kGS_KerningChecksumKey, kGS_OutlineFileSizeKey};
  return HasAny(record, kKeys);
}

bool FontRefContainsXMPData(const Dictionary& record) {
  constexpr std::string_view kKeys[] = {kAdobeXMPFontData_FamilyKey, kAdobeXMPFontData_TypeKey,
                                        kAdobeXMPFontData_VersionStringKey};
  return HasAny(record, kKeys);
}

int CountFontsWithGlyphsureData(const Array& fonts) {
  int count = 0;
  for (size_t i = 0; i < fonts.Count(); ++i) count += FontRefContainsGlyphsureData(Dictionary(fonts.At(i)));
  return count;
}

int CountMissingFonts(const Array& problemFonts) {
  int count = 0;
  for (size_t i = 0; i < problemFonts.Count(); ++i) {
    const Dictionary record(problemFonts.At(i));
    if (record && record.GetArray(kGS_PossibleReplacementsKey).Count() == 0) ++count;
  }
  return count;
}

int CountActiveFonts(const Array& matchedFonts) {
  int count = 0;
  for (size_t i = matchedFonts.Count(); i-- > 0;) {
    const Dictionary match = Dictionary(matchedFonts.At(i)).GetDictionary(kGS_MatchedFontKey);
    if (KeyValueIs(match, kGS_IsActiveKey, "1")) {
      ++count;
    } else {
      // The result is ignored. Keep the call: the desktop's font service was always asked here.
      FontManagerInterface::IsFontActive(match.GetString(kGS_AssignedFamilyGroupNameKey).Text());
    }
  }
  return count;
}

bool AllFontsResolved(const Array& problemFonts, Array matchedFonts) {
  bool allResolved = true;
  for (size_t i = 0; i < problemFonts.Count(); ++i) {
    const Dictionary font(problemFonts.At(i));
    if (font.Contains(kGS_MatchedFontKey)) {
      TraceMatched(font.GetDictionary(kGS_MatchedFontKey), font.GetString(kGS_PostScriptNameKey).CString(),
                   "chosen by the user");
      matchedFonts.Append(font);
      continue;
    }
    OutputIndentedAndFormattedString(0,
                                     "This font was skipped:  '%s' -- host app's Find Fonts dialog will be displayed",
                                     font.GetString(kGS_PostScriptNameKey).CString());
    allResolved = false;
  }
  return allResolved;
}

bool DoesArrayContainFontWithDatabaseID(const Array& fontArray, uint32_t databaseID, size_t* outIndex) {
  if (!fontArray || databaseID == 0) return false;
  for (size_t i = 0; i < fontArray.Count(); ++i) {
    const Dictionary record(fontArray.At(i));
    if (!record || static_cast<uint32_t>(XCFUtils::GetLongFromDictString(record, kGS_DatabaseIDKey)) != databaseID)
      continue;
    if (outIndex) *outIndex = i;
    return true;
  }
  return false;
}

}  // namespace GlyphsureSupport
