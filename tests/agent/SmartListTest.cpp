// Smart lists through the exported functions and the real agent: how they are made, changed and told, and what they
// contain.
#include <gmock/gmock.h>

#include <filesystem>
#include <set>

#include "agent/AgentRing.h"
#include "support/DebianFonts.h"

namespace {

using namespace agent_ring;
using platform::Array;
using platform::Dictionary;
using platform::String;
using platform::Value;
using platform::ValueRef;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SmartLists : public AgentRing {
 protected:
  SmartLists() {
    FillLibrary();
    Launch();
  }

  std::vector<std::string> Names() const {
    const Array lists = Array::Create();
    EXPECT_EQ(vpi_.GetAllSmartLists(Handle(), lists.Ref()), 0u);
    std::vector<std::string> names;
    for (size_t i = 0; i < lists.Count(); ++i) {
      names.emplace_back(Dictionary(lists.At(i)).GetString("smartListName").View());
    }
    return names;
  }
  // PostScript names, with a "+" after those of active fonts.
  std::vector<std::string> FontsOf(uint32_t list) const {
    const Array fonts = Array::Create();
    EXPECT_EQ(vpi_.GetSmartListFonts(Handle(), list, fonts.Ref()), 0u);
    std::vector<std::string> names;
    for (size_t i = 0; i < fonts.Count(); ++i) {
      const Dictionary font(fonts.At(i));
      names.push_back(std::string(font.GetString("postscriptName").View()) + (font.GetInteger("activated") ? "+" : ""));
    }
    return names;
  }
};

constexpr uint32_t kActive = 2, kInOpenDocuments = 3, kRecentlyAdded = 4;

TEST_F(SmartLists, AreMadeChangedAndDeleted) {
  EXPECT_EQ(vpi_.RegisterForNotifications(Handle(), &Recorder::Callback), 0u);
  EXPECT_THAT(Names(), ElementsAre("All", "Active", "In open documents", "Recently added"));
  RawClient client(state_ / "run");
  const Json made =
      client.Ask("PutSmartSet", {{"smartSetID", 0}, {"name", "Bold"}, {"rule", "weight = 700 and design = serif"}});
  const uint32_t bold = made["result"]["smartSetID"];
  uint32_t list = 0;
  EXPECT_EQ(vpi_.CreateSmartList(Handle(), "Mine", 0, nullptr, 0, nullptr, 0, nullptr, &list), 0u);
  EXPECT_GE(list, 101u);
  EXPECT_TRUE(recorder_.Await(PluginInterface::kSmartListsChanged));
  EXPECT_THAT(FontsOf(list), IsEmpty());
  EXPECT_EQ(vpi_.SetSmartListQuery(Handle(), list, 0, nullptr, 0, nullptr, 1, &bold), 0u);
  EXPECT_THAT(FontsOf(list), ElementsAre("LiberationSerif-Bold"));
  EXPECT_EQ(vpi_.RenameSmartList(Handle(), list, "My \"bold\" ones"), 0u);
  ValueRef text = nullptr;
  ASSERT_EQ(vpi_.GetPanelSmartListTree(Handle(), list, &text), 0u);
  EXPECT_EQ(String(Value::Adopt(text)).View(), "smartlist " + std::to_string(list) +
                                                   " \"My \\\"bold\\\" ones\"\nsmartset " + std::to_string(bold) +
                                                   " \"Bold\": weight = 700 and design = serif\n");
  ValueRef object = nullptr;
  ASSERT_EQ(vpi_.GetSmartList(Handle(), list, &object), 0u);
  EXPECT_EQ(Array(Dictionary(Value::Adopt(object)).Get("smartSetIDs")).Count(), 1u);
  // A smart set that is deleted leaves its lists.
  EXPECT_EQ(client.Ask("DeleteSmartSet", {{"smartSetID", bold}})["code"], 0);
  EXPECT_THAT(FontsOf(list), IsEmpty());
  // What was stored outlives the agent.
  End(SIGKILL);
  Launch();
  vpi_.ResetPluginFacadeInstance();
  EXPECT_THAT(Names(), testing::Contains("My \"bold\" ones"));
  EXPECT_EQ(vpi_.DeleteSmartList(Handle(), list), 0u);
  EXPECT_EQ(vpi_.DeleteSmartList(Handle(), list), uint32_t{agent_protocol::kNotFound});
}

TEST_F(SmartLists, ThoseOfTheAgentFollowWhatHappens) {
  const uint32_t font = FontNamed("LiberationSerif-Bold"), other = FontNamed("LiberationMono-Bold");
  EXPECT_THAT(FontsOf(kInOpenDocuments), IsEmpty());
  Activate({font}, 1);
  Activate({other}, 4);
  EXPECT_THAT(FontsOf(kInOpenDocuments), ElementsAre("LiberationSerif-Bold+"));
  EXPECT_THAT(FontsOf(kActive), ElementsAre("LiberationMono-Bold+", "LiberationSerif-Bold+"));
  EXPECT_THAT(FontsOf(kRecentlyAdded), testing::SizeIs(testing::Ge(4u)));
  for (const uint32_t list : {kActive, kInOpenDocuments}) {
    EXPECT_NE(vpi_.RenameSmartList(Handle(), list, "x"), 0u);
    EXPECT_NE(vpi_.DeleteSmartList(Handle(), list), 0u);
    EXPECT_NE(vpi_.SetSmartListQuery(Handle(), list, 0, nullptr, 0, nullptr, 0, nullptr), 0u);
  }
}

TEST_F(SmartLists, QueriesUniteSetsAndWorkgroups) {
  const uint32_t fonts[] = {FontNamed("LiberationSerif-Bold"), FontNamed("LiberationMono-Bold")};
  uint32_t set = 0;
  ASSERT_EQ(vpi_.CreateTopLevelSet(Handle(), &set, 1, "Titles", 0, 0, 1, fonts), 0u);
  const Array found = Array::Create();
  const uint32_t absent = 99;
  EXPECT_EQ(vpi_.QueryForSmartListFonts(Handle(), 0, nullptr, 1, &set, 1, &absent, found.Ref()), 0u);
  EXPECT_EQ(found.Count(), 1u);
  // With no workgroup the panel passes the count of the sets without their array.
  EXPECT_EQ(vpi_.QueryForSmartListFonts(Handle(), 0, nullptr, 1, nullptr, 0, nullptr, found.Ref()), 0u);
  EXPECT_EQ(found.Count(), 1u);
  const uint32_t library = 1;
  EXPECT_EQ(vpi_.QueryForSmartListFonts(Handle(), 1, &library, 1, &set, 0, nullptr, found.Ref()), 0u);
  EXPECT_EQ(found.Count(), 1u + FontsOf(1).size());
  EXPECT_EQ(vpi_.TrackFontPanelClick(Handle(), fonts[1], "1.0"), 0u);
  EXPECT_EQ(vpi_.TrackFontPanelClick(Handle(), fonts[1], "1.0"), 0u);
  RawClient client(state_ / "run");
  const Json described = client.Ask("DescribeFonts", {{"fontIDs", fonts}})["result"]["fonts"];
  EXPECT_EQ(described[0]["clicks"], 0);
  EXPECT_EQ(described[1]["clicks"], 2);
  const Json refused = client.Ask("FindFonts", {{"rule", "weight >"}});
  EXPECT_EQ(refused["code"], agent_protocol::kInvalidParam);
  EXPECT_THAT(refused["result"]["problem"], HasSubstr("value is expected"));
  EXPECT_EQ(client.Ask("FindFonts", {{"rule", "name = LiberationMono-Bold"}})["result"]["fontIDs"], Json({fonts[1]}));
}

TEST_F(SmartLists, EveryFontIsOfOneKind) {
  const size_t all = FontsOf(1).size();
  RawClient client(state_ / "run");
  std::set<uint32_t> fonts;
  size_t count = 0;
  const Json reply = client.Ask("GetFontKinds");
  for (const Json& kind : reply["result"]["kinds"]) {
    const auto ids = kind["fontIDs"].get<std::vector<uint32_t>>();
    count += ids.size();
    fonts.insert(ids.begin(), ids.end());
    const std::string record = client.Ask("GetFontInfoByID", {{"fontID", ids[0]}})["result"]["record"]["FontKind"];
    EXPECT_EQ(kind["kind"], record);
  }
  EXPECT_EQ(fonts.size(), count);
  EXPECT_EQ(count, all);
}

}  // namespace
