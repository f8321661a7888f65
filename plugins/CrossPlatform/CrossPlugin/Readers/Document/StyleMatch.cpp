#include "Readers/Document/StyleMatch.h"

#include <cstdlib>
#include <tuple>
#include <vector>

#include "Bridge/FontManagerInterface.h"
#include "Bridge/FontOrSetInfoRec.h"
#include "Identification/FontKeys.h"
#include "XCore/ECFExtensions/XCFUtils.h"

using namespace GlyphsureSupport;
using platform::Dictionary;

namespace {

// The percentage for each width of the OS/2 table, from 1.
constexpr int kStretches[] = {50, 62, 75, 87, 100, 112, 125, 150, 200};

// From 400 to 500 the nearest heavier face up to 500 comes first, then lighter ones, then heavier ones. Otherwise light
// styles look for lighter faces first and heavy ones for heavier faces.
int WeightDistance(int wanted, int weight) {
  constexpr int kWrongSide = 1000, kMediumWeight = 500;
  if (weight == wanted) return 0;
  const bool isLighter = weight < wanted;
  if (wanted >= FontStyle::kNormalWeight && wanted <= kMediumWeight) {
    if (!isLighter && weight <= kMediumWeight) return weight - wanted;
    return isLighter ? kWrongSide + wanted - weight : 2 * kWrongSide + weight - wanted;
  }
  const bool isOnRightSide = isLighter == (wanted < FontStyle::kNormalWeight);
  return std::abs(weight - wanted) + (isOnRightSide ? 0 : kWrongSide);
}

using Distance = std::tuple<int, bool, int>;

Distance DistanceOf(const FontStyle& style, const Dictionary& record) {
  const bool isItalic = XCFUtils::GetLongFromDictString(record, kGS_IsItalicKey) != 0;
  const auto weight = static_cast<int>(XCFUtils::GetLongFromDictString(record, kGS_WeightKey));
  return {std::abs(StretchOfWidthClass(XCFUtils::GetLongFromDictString(record, kGS_WidthKey)) - style.stretch),
          isItalic != style.isItalic, WeightDistance(style.weight, weight)};
}

std::string FindInFamily(FontManagerInterface& manager, const FontStyle& style) {
  constexpr long kAll = FontManagerInterface::kAllWorkgroupsID;
  std::string best;
  Distance bestDistance;
  std::vector<uint64_t> ids;
  if (manager.FontIDsForFamilyName(style.family, kAll, ids) != 0) return best;
  for (const uint64_t id : ids) {
    Dictionary request = Dictionary::Create();
    XCFUtils::PutULongIntoDictAsString(request, kGS_DatabaseIDKey, id);
    XCFUtils::PutLongIntoDictAsString(request, kGS_WorkgroupIDKey, kAll);
    FontOrSetInfoRec found;
    if (manager.GetFontInfoByID(request, &found) != 0 || !found.fontInfo) continue;
    const Distance distance = DistanceOf(style, found.fontInfo);
    if (!best.empty() && distance >= bestDistance) continue;
    best = found.fontInfo.GetString(kGS_PostScriptNameKey).Text();
    bestDistance = distance;
  }
  return best;
}

}  // namespace

int StretchOfWidthClass(long width) {
  constexpr long kWidths = sizeof kStretches / sizeof *kStretches;
  return width >= 1 && width <= kWidths ? kStretches[width - 1] : FontStyle::kNormalStretch;
}

std::string FindPostScriptName(const FontStyle& style) {
  FontManagerInterface* manager = FontManagerInterface::ConnectedManager();
  if (!manager) return {};
  if (std::string found = FindInFamily(*manager, style); !found.empty()) return found;
  // Some programs write parts of the style into the family: "DejaVu Sans Condensed".
  FontStyle split = StyleOfName(style.family);
  if (split.family == style.family) return {};
  if (split.weight == FontStyle::kNormalWeight) split.weight = style.weight;
  split.isItalic = split.isItalic || style.isItalic;
  return FindInFamily(*manager, split);
}
