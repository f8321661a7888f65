// The comparison of two candidates, stage by stage.
#include <map>
#include <utility>
#include <vector>

#include "Bridge/VPILoader.h"
#include "Identification/FontMatching.h"
#include "Identification/FontRecords.h"
#include "Services/DiagnosticLog.h"
#include "XCore/ECFExtensions/XCFUtils.h"
#include "platform/TextEncoding.h"

namespace GlyphsureSupport {

using platform::Array;
using platform::Dictionary;
using platform::String;

bool KeyValueContains(const Dictionary& record, std::string_view key, std::string_view part) {
  const String held = record.GetString(key);
  return held && held.View().size() >= part.size() && platform::ContainsCaseless(held.View(), part);
}

namespace {

struct Decision {
  int order = 0;
  MatchStage stage = MatchStage::kNone;
};

struct Pair {
  const Dictionary& first;
  const Dictionary& second;
  const Dictionary& context;
};

void Note(const char* text) { OutputIndentedAndFormattedString(0, "%s", text); }

// The value of the context decides if exactly one record has it.
int KeyValueStringMatch(const Dictionary& context, const Dictionary& first, const Dictionary& second,
                        std::string_view key) {
  const String wanted = context.GetString(key);
  if (!wanted) return 0;
  const bool inFirst = KeyValueIs(first, key, wanted.View());
  const bool inSecond = KeyValueIs(second, key, wanted.View());
  return inFirst == inSecond ? 0 : inFirst ? -1 : 1;
}

bool KeyHasNonZeroValue(const Dictionary& record, std::string_view key) {
  const String value = record.GetString(key);
  return !value.IsEmpty() && platform::IntegerOfText(value.View()) != 0;
}

Decision CompareActivation(const Pair& pair) {
  const bool firstActive = KeyValueIs(pair.first, kGS_IsActiveKey, "1");
  const bool secondActive = KeyValueIs(pair.second, kGS_IsActiveKey, "1");
  if (!firstActive && !secondActive) return {};
  if (!firstActive) {
    Note("...Choosing fontRef2 because it's active and fontRef1 isn't.");
    return {1, MatchStage::kActive};
  }
  if (!secondActive) {
    Note("...Choosing fontRef1 because it's active and fontRef2 isn't.");
    return {-1, MatchStage::kActive};
  }
  Note("...Two active fonts - one must be a system font.");
  // One-sided on purpose: of two active fonts that are no system fonts, the one asked about first stands.
  if (!KeyValueIs(pair.first, kGS_IsSystemKey, "1")) {
    Note("...Choosing non-system fontRef1 since user has explicitly overridden system version.");
    return {-1, MatchStage::kNonSystem};
  }
  if (!KeyValueIs(pair.second, kGS_IsSystemKey, "1")) {
    Note("...Choosing non-system fontRef2 since user has explicitly overridden system version.");
    return {1, MatchStage::kNonSystem};
  }
  return {};
}

// The flags in a record can be older than the agent's state.
Decision CompareAgentState(const Pair& pair) {
  if (!KeyHasNonZeroValue(pair.first, kGS_DatabaseIDKey) || !KeyHasNonZeroValue(pair.second, kGS_DatabaseIDKey)) {
    return {};
  }
  const uint32_t ids[2] = {
      static_cast<uint32_t>(XCFUtils::GetLongFromDictString(pair.first, kGS_DatabaseIDKey)),
      static_cast<uint32_t>(XCFUtils::GetLongFromDictString(pair.second, kGS_DatabaseIDKey)),
  };
  uint32_t active[2] = {0, 0};
  const VPILoader* table = VPILoader::GetSharedInstance();
  if (!table->pfGetFontIsActivated || !table->pfGetPluginFacadeInstance) return {};
  if (table->pfGetFontIsActivated(table->pfGetPluginFacadeInstance(), 2, ids, active) != 0) return {};
  if ((active[0] != 0) == (active[1] != 0)) return {};
  return {active[0] != 0 ? -1 : 1, MatchStage::kAgentState};
}

Decision CompareWithDocument(const Pair& pair) {
  if (!pair.context) return {};
  if (const int order = KeyValueStringMatch(pair.context, pair.first, pair.second, kGS_KindKey)) {
    Note("Choosing a same-named font with the same type according to Glyphsure.");
    return {order, MatchStage::kKindOfDocument};
  }
  if (const int order = KeyValueStringMatch(pair.context, pair.first, pair.second, kGS_FoundryKey)) {
    Note("Choice based on kGS_FoundryKey.");
    return {order, MatchStage::kFoundryOfDocument};
  }
  return {};
}

// OpenType before PostScript before TrueType.
int CompareKinds(const Dictionary& first, const Dictionary& second) {
  const auto isOpenType = [](const Dictionary& record) { return KeyValueContains(record, kGS_KindKey, kGS_Kind_OpenType); };
  const auto isPostscript = [](const Dictionary& record) { return KeyValueIs(record, kGS_KindKey, kGS_Kind_Postscript); };
  const auto isTrueType = [](const Dictionary& record) { return KeyValueIs(record, kGS_KindKey, kGS_Kind_TrueType); };
  if (isOpenType(first) && (isPostscript(second) || isTrueType(second))) return -1;
  if (isOpenType(second) && (isPostscript(first) || isTrueType(first))) return 1;
  if (isPostscript(first) && isTrueType(second)) return -1;
  return isPostscript(second) && isTrueType(first) ? 1 : 0;
}

Decision CompareFormat(const Pair& pair) {
  const int order = CompareKinds(pair.first, pair.second);
  if (order == 0) return {};
  Note("Choice based on kGS_KindKey.");
  return {order, MatchStage::kFormat};
}

Decision CompareFoundry(const Pair& pair) {
  const auto isAdobe = [](const Dictionary& record) {
    return record.GetString(kGS_FoundryKey).View().find("Adobe") != std::string_view::npos;
  };
  const bool first = isAdobe(pair.first), second = isAdobe(pair.second);
  if (first == second) return {};
  Note("Choice based on kGS_FoundryKey.");
  return {first ? -1 : 1, MatchStage::kAdobe};
}

int CompareVersions(const String& first, const String& second) {
  if (!first && !second) return 0;
  if (!second) return -1;
  if (!first) return 1;
  const double firstNumber = platform::RealOfText(first.View());
  const double secondNumber = platform::RealOfText(second.View());
  // Versions that begin with no number put the lower one first, the reverse of the others; slugs were chosen so.
  if (firstNumber == 0.0 || secondNumber == 0.0) return platform::CompareNumerically(first.View(), second.View());
  return firstNumber == secondNumber ? 0 : firstNumber > secondNumber ? -1 : 1;
}

Decision CompareVersion(const Pair& pair) {
  const int order = CompareVersions(pair.first.GetString(kGS_VersionKey), pair.second.GetString(kGS_VersionKey));
  if (order == 0) return {};
  Note("Choice based on kGS_VersionKey.");
  return {order, MatchStage::kVersion};
}

// A record without the flag is neither "1" nor "0", so it does not decide.
int CompareFlag(const Pair& pair, std::string_view key) {
  if (KeyValueIs(pair.first, key, "1") && KeyValueIs(pair.second, key, "0")) return -1;
  return KeyValueIs(pair.second, key, "1") && KeyValueIs(pair.first, key, "0") ? 1 : 0;
}

Decision CompareFlags(const Pair& pair) {
  if (const int order = CompareFlag(pair, kGS_IsTempKey)) {
    Note("Choice based on kGS_IsTempKey.");
    return {order, MatchStage::kTemporary};
  }
  if (const int order = CompareFlag(pair, kGS_IsVaultKey)) {
    Note("Choice based on kGS_IsVaultKey.");
    return {order, MatchStage::kVault};
  }
  return {};
}

constexpr Decision (*kStages[])(const Pair&) = {CompareActivation, CompareAgentState, CompareWithDocument, CompareFormat,
                                                CompareFoundry,    CompareVersion,    CompareFlags};

}  // namespace

int PickBestMatchCallBack(const Dictionary& first, const Dictionary& second, const Dictionary& context,
                          MatchStage* stage) {
  const Pair pair{first, second, context};
  Decision decision;
  for (const auto compare : kStages) {
    decision = compare(pair);
    if (decision.order != 0) break;
  }
  if (stage) *stage = decision.stage;
  OutputIndentedAndFormattedString(-1, "PickBestMatchCallBack returning %d.", decision.order);
  return decision.order;
}

const char* DescribeMatchStage(MatchStage stage) {
  switch (stage) {
    case MatchStage::kNone: return "first of equal candidates";
    case MatchStage::kActive: return "already active";
    case MatchStage::kNonSystem: return "activated by the user over the system's";
    case MatchStage::kAgentState: return "active according to the agent";
    case MatchStage::kKindOfDocument: return "same kind as the document says";
    case MatchStage::kFoundryOfDocument: return "same foundry as the document says";
    case MatchStage::kFormat: return "OpenType before PostScript before TrueType";
    case MatchStage::kAdobe: return "foundry preferred";
    case MatchStage::kVersion: return "version preferred";
    case MatchStage::kTemporary: return "temporarily active";
    case MatchStage::kVault: return "in the vault";
  }
  return "";
}

namespace {

// Merge sort by hand: the library's sorts may not be given a comparison that is no strict order.
class BestMatchSort {
 public:
  explicit BestMatchSort(const Dictionary& context) : context_(context) {}

  void Sort(std::vector<Dictionary>& records, size_t begin, size_t end) {
    if (end - begin < 2) return;
    const size_t middle = begin + (end - begin) / 2;
    Sort(records, begin, middle);
    Sort(records, middle, end);
    Merge(records, begin, middle, end);
  }

  // Why the first stands before the second: neighbours in the result have been compared.
  MatchStage StageOf(const Dictionary& first, const Dictionary& second) const {
    const auto found = stages_.find({first.Ref(), second.Ref()});
    return found == stages_.end() ? MatchStage::kNone : found->second;
  }

 private:
  void Merge(std::vector<Dictionary>& records, size_t begin, size_t middle, size_t end) {
    std::vector<Dictionary> merged;
    size_t left = begin, right = middle;
    while (left < middle && right < end) {
      MatchStage stage = MatchStage::kNone;
      const Dictionary &a = records[left], &b = records[right];
      const bool takeLeft = PickBestMatchCallBack(a, b, context_, &stage) <= 0;
      stages_[takeLeft ? std::pair(a.Ref(), b.Ref()) : std::pair(b.Ref(), a.Ref())] = stage;
      merged.push_back(records[takeLeft ? left++ : right++]);
    }
    while (left < middle) merged.push_back(records[left++]);
    while (right < end) merged.push_back(records[right++]);
    for (size_t i = 0; i < merged.size(); ++i) records[begin + i] = merged[i];
  }

  const Dictionary& context_;
  std::map<std::pair<platform::ValueRef, platform::ValueRef>, MatchStage> stages_;
};

}  // namespace

void SortByBestMatch(Array candidates, const Dictionary& context) {
  std::vector<Dictionary> records;
  for (size_t i = 0; i < candidates.Count(); ++i) records.emplace_back(candidates.At(i));
  BestMatchSort sort(context);
  sort.Sort(records, 0, records.size());
  for (size_t i = 0; i < records.size(); ++i) candidates.Set(i, records[i]);
  if (records.size() < 2) return;
  const Dictionary& best = records[0];
  OutputIndentedAndFormattedString(0, "Best candidate for '%s' is font %ld: %s",
                                   best.GetString(kGS_PostScriptNameKey).CString(),
                                   XCFUtils::GetLongFromDictString(best, kGS_DatabaseIDKey),
                                   DescribeMatchStage(sort.StageOf(best, records[1])));
}

}  // namespace GlyphsureSupport
