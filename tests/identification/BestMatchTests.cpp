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

// Two of these are tied in every stage.
Dictionary Plain() {
  return Record({{"PostScriptName", "Font"},
                 {"FontKind", "TrueType"},
                 {"Foundry", "Foundry"},
                 {"Version", "1.000"},
                 {"IsActive", "0"},
                 {"IsSystem", "0"},
                 {"IsTemp", "0"},
                 {"IsVault", "0"}});
}

class BestMatch : public PluginFixture {
 protected:
  BestMatch() {
    agent.Add({.id = 1, .postScriptName = "Font", .ownState = 4});
    agent.Add({.id = 2, .postScriptName = "Font"});
    agent.Add({.id = 3, .postScriptName = "Font"});
    agent.Add({.id = 4, .postScriptName = "Font", .ownState = 5});
  }
};

struct StageRow {
  const char* why;
  Entries first;
  Entries second;
  Entries context;
  MatchStage stage;
  int order;    // first with second
  int reverse;  // second with first
};

}  // namespace

namespace {

using enum MatchStage;

// Each row differs in nothing but what its stage looks at.
// clang-format off
const StageRow kEachStage[] = {
    {"tied", {}, {}, {}, kNone, 0, 0},
    {"active", {{"IsActive", "1"}}, {}, {}, kActive, -1, 1},
    {"flag missing is not active", {{"IsActive", "1"}}, {{"IsActive", ""}}, {}, kActive, -1, 1},
    {"two active, neither of the system: the first asked about", {{"IsActive", "1"}}, {{"IsActive", "1"}},
     {}, kNonSystem, -1, -1},
    {"two active, one of the system", {{"IsActive", "1"}}, {{"IsActive", "1"}, {"IsSystem", "1"}},
     {}, kNonSystem, -1, 1},
    {"two active, both of the system", {{"IsActive", "1"}, {"IsSystem", "1"}},
     {{"IsActive", "1"}, {"IsSystem", "1"}}, {}, kNone, 0, 0},
    {"system without activity", {{"IsSystem", "1"}}, {}, {}, kNone, 0, 0},
    {"agent's state", {{"DatabaseID", "1"}}, {{"DatabaseID", "2"}}, {}, kAgentState, -1, 1},
    {"agent's state alike", {{"DatabaseID", "2"}}, {{"DatabaseID", "3"}}, {}, kNone, 0, 0},
    {"agent's state both", {{"DatabaseID", "1"}}, {{"DatabaseID", "4"}}, {}, kNone, 0, 0},
    {"one without ID", {{"DatabaseID", "1"}}, {{"DatabaseID", "0"}}, {}, kNone, 0, 0},
    {"kind of the document", {{"FontKind", "Type 9"}}, {{"FontKind", "Type 8"}},
     {{"FontKind", "TYPE 9"}}, kKindOfDocument, -1, 1},
    {"kind without a document", {{"FontKind", "Type 9"}}, {{"FontKind", "Type 8"}}, {}, kNone, 0, 0},
    {"kind that neither has", {{"FontKind", "Type 9"}}, {{"FontKind", "Type 8"}},
     {{"FontKind", "Type 7"}}, kNone, 0, 0},
    {"foundry of the document", {{"Foundry", "URW"}}, {}, {{"Foundry", "urw"}}, kFoundryOfDocument, -1, 1},
    {"OpenType before PostScript", {{"FontKind", "opentype - PS"}}, {{"FontKind", "PostScript"}}, {}, kFormat, -1, 1},
    {"OpenType before TrueType", {{"FontKind", "OpenType - TT"}}, {}, {}, kFormat, -1, 1},
    {"PostScript before TrueType", {{"FontKind", "Postscript"}}, {}, {}, kFormat, -1, 1},
    {"two kinds of OpenType", {{"FontKind", "OpenType - TT"}}, {{"FontKind", "OpenType - PS"}}, {}, kNone, 0, 0},
    {"a kind that has no rank", {{"FontKind", "OpenType - TT"}}, {{"FontKind", "PostScript - MM"}}, {}, kNone, 0, 0},
    {"Adobe", {{"Foundry", "Adobe Systems"}}, {}, {}, kAdobe, -1, 1},
    {"Adobe keeps case", {{"Foundry", "ADOBE"}}, {}, {}, kNone, 0, 0},
    {"Adobe before none", {{"Foundry", "Adobe"}}, {{"Foundry", ""}}, {}, kAdobe, -1, 1},
    {"a version before none", {{"Version", "0.5"}}, {{"Version", ""}}, {}, kHasVersion, -1, 1},
    {"higher number", {{"Version", "2.000"}}, {}, {}, kVersionNumber, -1, 1},
    {"number with a tail", {{"Version", "10.1;hotconv"}}, {{"Version", "9.9"}}, {}, kVersionNumber, -1, 1},
    {"equal numbers", {{"Version", "1.0"}}, {}, {}, kNone, 0, 0},
    {"lower of two that begin with a word", {{"Version", "Version 1.2"}}, {{"Version", "Version 1.10"}},
     {}, kVersionText, -1, 1},
    {"lower where one is a word", {{"Version", "0.000"}}, {{"Version", "1.000"}}, {}, kVersionText, -1, 1},
    {"temporary", {{"IsTemp", "1"}}, {}, {}, kTemporary, -1, 1},
    {"temporary and unknown", {{"IsTemp", "1"}}, {{"IsTemp", ""}}, {}, kNone, 0, 0},
    {"vault", {{"IsVault", "1"}}, {}, {}, kVault, -1, 1},
    {"vault and unknown", {{"IsVault", ""}}, {}, {}, kNone, 0, 0},
};
// clang-format on

}  // namespace

TEST_F(BestMatch, EachStageDecidesWhatOnlyItCanTellApart) {
  for (const StageRow& row : kEachStage) {
    const Dictionary first = With(Plain(), row.first), second = With(Plain(), row.second);
    const Dictionary context = row.context.size() > 0 ? Record(row.context) : Dictionary();
    MatchStage stage = MatchStage::kNone;
    EXPECT_EQ(PickBestMatchCallBack(first, second, context, &stage), row.order) << row.why;
    EXPECT_EQ(stage, row.stage) << row.why;
    EXPECT_EQ(PickBestMatchCallBack(second, first, context, &stage), row.reverse) << row.why;
    EXPECT_EQ(stage, row.stage) << row.why;
  }
}

// The first record wins the stage, the second one what the next could say: that is the order of the two.
TEST_F(BestMatch, EarlierStageWinsOverTheNext) {
  // clang-format off
  const StageRow rows[] = {
    {"active", {{"IsActive", "1"}, {"DatabaseID", "2"}}, {{"DatabaseID", "1"}}, {}, kActive, -1, 1},
    {"non-system", {{"IsActive", "1"}, {"DatabaseID", "2"}},
     {{"IsActive", "1"}, {"IsSystem", "1"}, {"DatabaseID", "1"}}, {}, kNonSystem, -1, 1},
    {"agent", {{"DatabaseID", "1"}}, {{"DatabaseID", "2"}, {"FontKind", "K"}}, {{"FontKind", "K"}}, kAgentState, -1, 1},
    {"kind of document", {{"FontKind", "K"}}, {{"Foundry", "F"}},
     {{"FontKind", "K"}, {"Foundry", "F"}}, kKindOfDocument, -1, 1},
    {"foundry of document", {{"Foundry", "F"}}, {{"FontKind", "OpenType"}},
     {{"Foundry", "F"}}, kFoundryOfDocument, -1, 1},
    {"format", {{"FontKind", "OpenType"}}, {{"Foundry", "Adobe"}}, {}, kFormat, -1, 1},
    {"Adobe", {{"Foundry", "Adobe"}, {"Version", ""}}, {}, {}, kAdobe, -1, 1},
    {"has version", {{"Version", "x"}}, {{"Version", ""}, {"IsTemp", "1"}}, {}, kHasVersion, -1, 1},
    {"version number", {{"Version", "2.0"}}, {{"IsTemp", "1"}}, {}, kVersionNumber, -1, 1},
    {"version text", {{"Version", "a"}}, {{"Version", "b"}, {"IsTemp", "1"}}, {}, kVersionText, -1, 1},
    {"temporary", {{"IsTemp", "1"}}, {{"IsVault", "1"}}, {}, kTemporary, -1, 1},
  };
  // clang-format on
  for (const StageRow& row : rows) {
    const Dictionary first = With(Plain(), row.first), second = With(Plain(), row.second);
    MatchStage stage = MatchStage::kNone;
    EXPECT_EQ(PickBestMatchCallBack(first, second, Record(row.context), &stage), row.order) << row.why;
    EXPECT_EQ(stage, row.stage) << row.why;
    EXPECT_EQ(PickBestMatchCallBack(second, first, Record(row.context), &stage), row.reverse) << row.why;
  }
}

TEST_F(BestMatch, AgentThatFailsDecidesNothing) {
  const Dictionary active = With(Plain(), {{"DatabaseID", "1"}}), other = With(Plain(), {{"DatabaseID", "2"}});
  agent.FailNext(AgentFunction::GetFontIsActivated, FakeAgent::kGone);
  EXPECT_EQ(PickBestMatchCallBack(active, other, Dictionary()), 0);
  EXPECT_EQ(agent.Count("GetFontIsActivated"), 1u);
  EXPECT_EQ(PickBestMatchCallBack(active, Plain(), Dictionary()), 0);
  EXPECT_EQ(agent.Count("GetFontIsActivated"), 1u) << "nobody is asked about a font without an ID";
}

TEST_F(BestMatch, SortPutsTheBestFirstFromEveryOrder) {
  Array fonts = ArrayOf({With(Plain(), {{"Path", "/best"}, {"FontKind", "OpenType"}, {"Version", "2.0"}}),
                         With(Plain(), {{"Path", "/next"}, {"FontKind", "OpenType"}}),
                         With(Plain(), {{"Path", "/third"}, {"FontKind", "Postscript"}}),
                         With(Plain(), {{"Version", "9"}}), Plain()});
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
  for (int i = 0; i < 9; ++i) fonts.Append(With(Plain(), {{"IsActive", "1"}, {"Path", "/" + std::to_string(i)}}));
  const Array before = fonts.Copy();
  SortByBestMatch(fonts, Dictionary());
  EXPECT_TRUE(fonts.Equals(before)) << "of several active ones the first to arrive stands";
  EXPECT_TRUE(Traced("Preferred '/0' over '/1' for 'Font': activated in place of the system's"));
}
