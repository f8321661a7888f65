// Compares two candidates: a table with one stage per row. The first stage that decides ends the comparison.
#include <iterator>

#include "Bridge/VPILoader.h"
#include "Identification/FontMatching.h"
#include "Identification/FontRecords.h"
#include "Services/DiagnosticLog.h"
#include "XCore/ECFExtensions/XCFUtils.h"
#include "platform/TextEncoding.h"

namespace GlyphsureSupport {

using platform::Dictionary;
using platform::String;

bool KeyValueContains(const Dictionary& record, std::string_view key, std::string_view part) {
  const String held = record.GetString(key);
  return held && held.View().size() >= part.size() && platform::ContainsCaseless(held.View(), part);
}

bool KeyHasNonZeroValue(const Dictionary& record, std::string_view key) {
  const String value = record.GetString(key);
  return !value.IsEmpty() && platform::IntegerOfText(value.View()) != 0;
}

namespace {

struct Pair {
  const Dictionary& first;
  const Dictionary& second;
  const Dictionary& context;  // null without a document font to compare with
};

// Returns -1 if only the first has the property, 1 if only the second has it, otherwise 0.
int ThatWhichHas(bool inFirst, bool inSecond) { return inFirst == inSecond ? 0 : inFirst ? -1 : 1; }

// Decides if exactly one record has the same value as the context.
int KeyValueStringMatch(const Dictionary& context, const Dictionary& first, const Dictionary& second,
                        std::string_view key) {
  const String wanted = context.GetString(key);
  if (!wanted) return 0;
  return ThatWhichHas(KeyValueIs(first, key, wanted.View()), KeyValueIs(second, key, wanted.View()));
}

int CompareActive(const Pair& pair) {
  return ThatWhichHas(KeyValueIs(pair.first, kGS_IsActiveKey, "1"), KeyValueIs(pair.second, kGS_IsActiveKey, "1"));
}

// For two active fonts. One-sided on purpose: if neither is a system font, it prefers the first argument.
int CompareNonSystem(const Pair& pair) {
  if (!KeyValueIs(pair.first, kGS_IsActiveKey, "1")) return 0;
  OutputIndentedAndFormattedString(0, "...Two active fonts - one must be a system font.");
  if (!KeyValueIs(pair.first, kGS_IsSystemKey, "1")) return -1;
  return KeyValueIs(pair.second, kGS_IsSystemKey, "1") ? 0 : 1;
}

// Asks the agent, because the flags in a record can be outdated.
int CompareAgentState(const Pair& pair) {
  if (!KeyHasNonZeroValue(pair.first, kGS_DatabaseIDKey) || !KeyHasNonZeroValue(pair.second, kGS_DatabaseIDKey))
    return 0;
  const VPILoader* table = VPILoader::GetSharedInstance();
  if (!table->pfGetFontIsActivated || !table->pfGetPluginFacadeInstance) return 0;
  const uint32_t ids[2] = {
      static_cast<uint32_t>(XCFUtils::GetLongFromDictString(pair.first, kGS_DatabaseIDKey)),
      static_cast<uint32_t>(XCFUtils::GetLongFromDictString(pair.second, kGS_DatabaseIDKey)),
  };
  uint32_t active[2] = {0, 0};
  if (table->pfGetFontIsActivated(table->pfGetPluginFacadeInstance(), 2, ids, active) != 0) return 0;
  return ThatWhichHas(active[0] != 0, active[1] != 0);
}

int CompareKindWithDocument(const Pair& pair) {
  return KeyValueStringMatch(pair.context, pair.first, pair.second, kGS_KindKey);
}

int CompareFoundryWithDocument(const Pair& pair) {
  return KeyValueStringMatch(pair.context, pair.first, pair.second, kGS_FoundryKey);
}

// The rank of the record's kind in the order of preference. 0 for any other kind, which does not decide.
int FormatRank(const Dictionary& record) {
  if (KeyValueContains(record, kGS_KindKey, kGS_Kind_OpenType)) return 1;
  if (KeyValueIs(record, kGS_KindKey, kGS_Kind_Postscript)) return 2;
  return KeyValueIs(record, kGS_KindKey, kGS_Kind_TrueType) ? 3 : 0;
}

int CompareFormat(const Pair& pair) {
  const int first = FormatRank(pair.first), second = FormatRank(pair.second);
  if (first == 0 || second == 0 || first == second) return 0;
  return first < second ? -1 : 1;
}

// The only comparison here that respects case.
int CompareAdobe(const Pair& pair) {
  const auto isAdobe = [](const Dictionary& record) {
    return record.GetString(kGS_FoundryKey).View().find("Adobe") != std::string_view::npos;
  };
  return ThatWhichHas(isAdobe(pair.first), isAdobe(pair.second));
}

int CompareHasVersion(const Pair& pair) {
  return ThatWhichHas(static_cast<bool>(pair.first.GetString(kGS_VersionKey)),
                      static_cast<bool>(pair.second.GetString(kGS_VersionKey)));
}

double VersionNumber(const Dictionary& record) { return platform::RealOfText(record.GetString(kGS_VersionKey).View()); }

bool HaveVersionNumbers(const Pair& pair) {
  return VersionNumber(pair.first) != 0.0 && VersionNumber(pair.second) != 0.0;
}

int CompareVersionNumbers(const Pair& pair) {
  if (!HaveVersionNumbers(pair)) return 0;
  const double first = VersionNumber(pair.first), second = VersionNumber(pair.second);
  return first == second ? 0 : first > second ? -1 : 1;
}

// Prefers the lower version, unlike the stage above. Do not correct it: fonts in old documents were chosen so.
int CompareVersionTexts(const Pair& pair) {
  if (HaveVersionNumbers(pair)) return 0;
  return platform::CompareNumerically(pair.first.GetString(kGS_VersionKey).View(),
                                      pair.second.GetString(kGS_VersionKey).View());
}

// Decides only if both records have the flag.
int CompareFlag(const Pair& pair, std::string_view key) {
  if (KeyValueIs(pair.first, key, "1") && KeyValueIs(pair.second, key, "0")) return -1;
  return KeyValueIs(pair.second, key, "1") && KeyValueIs(pair.first, key, "0") ? 1 : 0;
}

int CompareTemporary(const Pair& pair) { return CompareFlag(pair, kGS_IsTempKey); }
int CompareVault(const Pair& pair) { return CompareFlag(pair, kGS_IsVaultKey); }

// For each stage the trace lines for preferring the first or the second record (null for none), and the reason in
// words.
struct Stage {
  MatchStage stage;
  int (*compare)(const Pair&);
  const char* firstLine;
  const char* secondLine;
  const char* words;
};

constexpr const char* kByKind = "Choice based on kGS_KindKey.";
constexpr const char* kByFoundry = "Choice based on kGS_FoundryKey.";
constexpr const char* kByVersion = "Choice based on kGS_VersionKey.";
constexpr const char* kByTemp = "Choice based on kGS_IsTempKey.";
constexpr const char* kByVault = "Choice based on kGS_IsVaultKey.";
constexpr const char* kBySameType = "Choosing a same-named font with the same type according to Glyphsure.";

constexpr Stage kStages[] = {
    {MatchStage::kActive, CompareActive, "...Choosing fontRef1 because it's active and fontRef2 isn't.",
     "...Choosing fontRef2 because it's active and fontRef1 isn't.", "already active"},
    {MatchStage::kNonSystem, CompareNonSystem,
     "...Choosing non-system fontRef1 since user has explicitly overridden system version.",
     "...Choosing non-system fontRef2 since user has explicitly overridden system version.",
     "activated in place of the system's"},
    {MatchStage::kAgentState, CompareAgentState, nullptr, nullptr, "active according to the agent"},
    {MatchStage::kKindOfDocument, CompareKindWithDocument, kBySameType, kBySameType, "same kind as in the document"},
    {MatchStage::kFoundryOfDocument, CompareFoundryWithDocument, kByFoundry, kByFoundry,
     "same foundry as in the document"},
    {MatchStage::kFormat, CompareFormat, kByKind, kByKind, "OpenType before PostScript before TrueType"},
    {MatchStage::kAdobe, CompareAdobe, kByFoundry, kByFoundry, "from Adobe"},
    {MatchStage::kHasVersion, CompareHasVersion, kByVersion, kByVersion, "states a version"},
    {MatchStage::kVersionNumber, CompareVersionNumbers, kByVersion, kByVersion, "higher version"},
    {MatchStage::kVersionText, CompareVersionTexts, kByVersion, kByVersion, "lower version, as one is no number"},
    {MatchStage::kTemporary, CompareTemporary, kByTemp, kByTemp, "temporarily active"},
    {MatchStage::kVault, CompareVault, kByVault, kByVault, "in the vault"},
};

}  // namespace

int PickBestMatchCallBack(const Dictionary& first, const Dictionary& second, const Dictionary& context,
                          MatchStage* stage) {
  const Pair pair{first, second, context};
  int order = 0;
  MatchStage decided = MatchStage::kNone;
  for (const Stage& row : kStages) {
    order = row.compare(pair);
    if (order == 0) continue;
    decided = row.stage;
    if (const char* line = order < 0 ? row.firstLine : row.secondLine) OutputIndentedAndFormattedString(0, "%s", line);
    break;
  }
  if (stage) *stage = decided;
  OutputIndentedAndFormattedString(0, "PickBestMatchCallBack returning %d.", order);
  return order;
}

const char* DescribeMatchStage(MatchStage stage) {
  for (const Stage& row : kStages) {
    if (row.stage == stage) return row.words;
  }
  return "first of equal candidates";
}

}  // namespace GlyphsureSupport
