// The comparison of two candidates, stage by stage, and the sort by it.
#include <algorithm>

#include "Identification/FontMatching.h"
#include "support/PluginFixture.h"
#include "support/Records.h"

using namespace GlyphsureSupport;
using namespace fakes;
using platform::Array;
using platform::Dictionary;

namespace {

using enum MatchStage;

// Two of these are tied in every stage.
Dictionary Plain(const char* changes = "") {
  const Dictionary record = Changed(Named("Font"), "FontKind=TrueType|Foundry=Foundry|Version=1.000");
  return Changed(Changed(record, "IsActive=0|IsSystem=0|IsTemp=0|IsVault=0"), changes);
}

// The agent has the fonts 1 and 4 active, 2 and 3 not.
class BestMatch : public PluginFixture {
 protected:
  BestMatch() {
    const int ownStates[] = {4, 0, 0, 5};
    for (uint32_t i = 0; i < 4; ++i) agent.Add({.id = i + 1, .postScriptName = "Font", .ownState = ownStates[i]});
  }
};

// Each pair is compared in both orders: the first wins, or no stage decides.
struct StageRow {
  const char* first;
  const char* second;
  const char* document;
  MatchStage stage;
  bool isOneSided = false;  // the first argument wins
};

// The records of a row differ only in what its stage compares. If the second record has an advantage of a later stage,
// the row shows that the earlier stage decides.
const StageRow kStageRows[] = {
    {"", "", "", kNone},
    {"IsActive=1", "", "", kActive},
    {"IsActive=1", "IsActive=", "", kActive},
    {"IsActive=1|DatabaseID=2", "DatabaseID=1", "", kActive},
    {"IsActive=1", "IsActive=1", "", kNonSystem, true},
    {"IsActive=1", "IsActive=1|IsSystem=1", "", kNonSystem},
    {"IsActive=1|IsSystem=1", "IsActive=1|IsSystem=1", "", kNone},
    {"IsSystem=1", "", "", kNone},
    {"IsActive=1|DatabaseID=2", "IsActive=1|IsSystem=1|DatabaseID=1", "", kNonSystem},
    {"DatabaseID=1", "DatabaseID=2", "", kAgentState},
    {"DatabaseID=2", "DatabaseID=3", "", kNone},
    {"DatabaseID=1", "DatabaseID=4", "", kNone},
    {"DatabaseID=1", "DatabaseID=0", "", kNone},
    {"DatabaseID=1", "DatabaseID=2|FontKind=K", "FontKind=K", kAgentState},
    {"FontKind=Type 9", "FontKind=Type 8", "FontKind=TYPE 9", kKindOfDocument},
    {"FontKind=Type 9", "FontKind=Type 8", "", kNone},
    {"FontKind=Type 9", "FontKind=Type 8", "FontKind=Type 7", kNone},
    {"FontKind=K", "Foundry=F", "FontKind=K|Foundry=F", kKindOfDocument},
    {"Foundry=URW", "", "Foundry=urw", kFoundryOfDocument},
    {"Foundry=F", "FontKind=OpenType", "Foundry=F", kFoundryOfDocument},
    {"FontKind=opentype - PS", "FontKind=PostScript", "", kFormat},
    {"FontKind=OpenType - TT", "", "", kFormat},
    {"FontKind=Postscript", "", "", kFormat},
    {"FontKind=OpenType - TT", "FontKind=OpenType - PS", "", kNone},
    {"FontKind=OpenType - TT", "FontKind=PostScript - MM", "", kNone},
    {"FontKind=OpenType", "Foundry=Adobe", "", kFormat},
    {"Foundry=The Adobe", "", "", kAdobe},
    {"Foundry=ADOBE", "", "", kNone},
    {"Foundry=Adobe", "Foundry=", "", kAdobe},
    {"Foundry=Adobe|Version=", "", "", kAdobe},
    {"Version=0.5", "Version=", "", kHasVersion},
    {"Version=x", "Version=|IsTemp=1", "", kHasVersion},
    {"Version=2.000", "", "", kVersionNumber},
    {"Version=10.1;hotconv", "Version=9.9", "", kVersionNumber},
    {"Version=1.0", "", "", kNone},
    {"Version=2.0", "IsTemp=1", "", kVersionNumber},
    {"Version=Version 1.2", "Version=Version 1.10", "", kVersionText},
    {"Version=0.000", "Version=1.000", "", kVersionText},
    {"Version=a", "Version=b|IsTemp=1", "", kVersionText},
    {"IsTemp=1", "", "", kTemporary},
    {"IsTemp=1", "IsTemp=", "", kNone},
    {"IsTemp=1", "IsVault=1", "", kTemporary},
    {"IsVault=1", "", "", kVault},
    {"IsVault=", "", "", kNone},
};

}  // namespace

TEST_F(BestMatch, EachStageDecidesWhatOnlyItCanTellApartAndWinsOverTheNext) {
  for (const StageRow& row : kStageRows) {
    SCOPED_TRACE(std::string(row.first) + " / " + row.second + " / " + row.document);
    const Dictionary first = Plain(row.first), second = Plain(row.second);
    const Dictionary context = *row.document ? Changed(Named("Font"), row.document) : Dictionary();
    const int order = row.stage == kNone ? 0 : -1;
    MatchStage stage = kNone;
    EXPECT_EQ(PickBestMatchCallBack(first, second, context, &stage), order);
    EXPECT_EQ(stage, row.stage);
    EXPECT_EQ(PickBestMatchCallBack(second, first, context, &stage), row.isOneSided ? order : -order);
    EXPECT_EQ(stage, row.stage);
  }
}

TEST_F(BestMatch, AgentThatFailsDecidesNothing) {
  agent.FailNext(AgentFunction::GetFontIsActivated, FakeAgent::kGone);
  EXPECT_EQ(PickBestMatchCallBack(Plain("DatabaseID=1"), Plain("DatabaseID=2"), Dictionary()), 0);
  PickBestMatchCallBack(Plain("DatabaseID=1"), Plain(), Dictionary());
  EXPECT_EQ(agent.Count("GetFontIsActivated"), 1u) << "nobody is asked about a font without an ID";
}

TEST_F(BestMatch, SortPutsTheBestFirstFromEveryOrder) {
  const Array fonts = ArrayOf({Plain("Path=/best|FontKind=OpenType|Version=2.0"), Plain("Path=/next|FontKind=OpenType"),
                               Plain("Path=/third|FontKind=Postscript"), Plain("Version=9"), Plain()});
  std::vector<size_t> order = {0, 1, 2, 3, 4};
  do {
    trace.clear();
    Array shuffled = Array::Create();
    for (const size_t i : order) shuffled.Append(fonts.At(i));
    SortByBestMatch(shuffled, Named("Asked"));
    for (size_t i = 0; i < fonts.Count(); ++i) ASSERT_TRUE(shuffled.At(i) == fonts.At(i));
    EXPECT_EQ(TracedLines("Preferred "),
              std::vector<std::string>{"Preferred '/best' over '/next' for 'Asked': higher version"});
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(BestMatch, SortTakesTheOneSidedStageAsItStands) {
  Array fonts = Array::Create();
  for (int i = 0; i < 9; ++i) fonts.Append(Plain(("IsActive=1|Path=/" + std::to_string(i)).c_str()));
  const Array before = fonts.Copy();
  SortByBestMatch(fonts, Dictionary());
  EXPECT_TRUE(fonts.Equals(before)) << "of several active ones the first to arrive stands";
  EXPECT_TRUE(Traced("Preferred '/0' over '/1' for 'Font': activated in place of the system's"));
}
