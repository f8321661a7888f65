// Several libraries and rights, through the exported functions and the real agent.
#include <gmock/gmock.h>

#include <filesystem>

#include "agent/AgentRing.h"
#include "support/DebianFonts.h"

namespace {

namespace fs = std::filesystem;
using namespace agent_ring;
using platform::Array;
using platform::Dictionary;
using platform::Value;
using platform::ValueRef;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr uint32_t kInvalidParam = agent_protocol::kInvalidParam;

class Workgroups : public AgentRing {
 protected:
  Workgroups() {
    FillLibrary();
    Launch();
    AwaitListening();
  }

  // "ID type name" of what the plug-in sees.
  std::vector<std::string> Seen(bool special) const {
    ValueRef list = nullptr;
    EXPECT_EQ(vpi_.GetAllWorkgroupsForUser(Handle(), &list, special, false), 0u);
    const Array array(Value::Adopt(list));
    std::vector<std::string> seen;
    for (size_t i = 0; i < array.Count(); ++i) {
      const Dictionary group(array.At(i));
      seen.push_back(group.GetString("WorkgroupID").Text() + " " + group.GetString("WorkgroupType").Text() + " " +
                     group.GetString("WorkgroupName").Text());
    }
    return seen;
  }
  std::vector<uint32_t> FontsIn(const char* name, uint32_t workgroup) const {
    std::vector<uint32_t> ids(16);
    uint32_t count = 0;
    EXPECT_EQ(vpi_.GetFontsByPostscriptName(Handle(), name, &workgroup, 1, ids.data(), 16, &count), 0u);
    ids.resize(count);
    return ids;
  }
  bool Holds(const char* right, uint32_t workgroup) const {
    int32_t held = 99;
    EXPECT_EQ(vpi_.GetPermission(Handle(), 1, right, workgroup, &held), 0u);
    return held == 1;
  }
  Json Put(RawClient& client, uint32_t id, const std::string& name, const std::vector<std::string>& folders) const {
    Json reply = client.Ask("PutLibrary", {{"workgroupID", id}, {"name", name}, {"folders", folders}});
    AwaitScan(client);
    return reply;
  }
  // Returns when the scan that a change has started is over.
  void AwaitScan(RawClient& client) const {
    while (client.Ask("GetStatus")["result"]["isScanning"]) {
    }
  }
};

TEST_F(Workgroups, ALibraryIsMadeSearchedRenamedAndDeleted) {
  EXPECT_EQ(vpi_.RegisterForNotifications(Handle(), &Recorder::Callback), 0u);
  EXPECT_THAT(Seen(true), ElementsAre("1 3 Font Library", "2 4 System"));
  // A folder below the first library's is a library of its own.
  fs::create_directory(fonts_ / "client");
  fs::rename(fonts_ / "NimbusSans-Bold.t1", fonts_ / "client/NimbusSans-Bold.t1");
  RawClient client(state_ / "run");
  EXPECT_EQ(Put(client, 0, "Client", {fonts_ / "client/"})["result"]["workgroupID"], 11);
  EXPECT_TRUE(recorder_.Await(PluginInterface::kWorkgroupsChanged));
  EXPECT_THAT(Seen(false), ElementsAre("1 3 Font Library", "11 3 Client"));
  const std::vector<uint32_t> both = FontsNamed("NimbusSans-Bold");
  ASSERT_EQ(both.size(), 2u);
  EXPECT_THAT(FontsIn("NimbusSans-Bold", 1), ElementsAre(both[0]));
  EXPECT_THAT(FontsIn("NimbusSans-Bold", 11), ElementsAre(both[1]));
  EXPECT_THAT(FontsIn("NimbusSans-Bold", 12), IsEmpty());
  uint32_t set = 0;
  EXPECT_EQ(vpi_.CreateTopLevelSet(Handle(), &set, 11, "For the client", 0, 0, 1, &both[1]), 0u);
  EXPECT_EQ(vpi_.CreateTopLevelSet(Handle(), &set, 2, "System", 0, 0, 0, nullptr), kInvalidParam);

  EXPECT_EQ(Put(client, 11, "Customer", {fonts_ / "client"})["code"], 0);

  // It is stored, with the IDs of its fonts.
  End(SIGKILL);
  Launch();
  vpi_.ResetPluginFacadeInstance();
  EXPECT_THAT(Seen(false), ElementsAre("1 3 Font Library", "11 3 Customer"));
  EXPECT_THAT(FontsIn("NimbusSans-Bold", 11), ElementsAre(both[1]));
  RawClient second(state_ / "run");
  EXPECT_EQ(second.Ask("DeleteLibrary", {{"workgroupID", 1}})["code"], agent_protocol::kNotFound);
  EXPECT_EQ(second.Ask("DeleteLibrary", {{"workgroupID", 11}})["code"], 0);
  AwaitScan(second);
  // Its fonts are below the folder of the first library, and its sets go there too.
  EXPECT_THAT(FontsIn("NimbusSans-Bold", 1), testing::UnorderedElementsAreArray(both));
  EXPECT_EQ(second.Ask("GetSets")["result"]["sets"][0]["workgroupID"], 1);
  const Json next = second.Ask("PutLibrary", {{"workgroupID", 0}, {"name", "Next"}, {"folders", Json::array()}});
  EXPECT_EQ(next["result"]["workgroupID"], 12) << "an ID is never used again";
}

TEST_F(Workgroups, MistakesInALibraryAreExplained) {
  RawClient client(state_ / "run");
  const struct {
    uint32_t id;
    const char* name;
    std::string folder;
    const char* problem;
  } refused[] = {
      {0, "Same", fonts_.Path(), "is a folder of the library Font Library"},
      {0, "", fonts_ / "x", "name is empty"},
      {0, "Relative", "x", "not an absolute path"},
      {1, "My fonts", fonts_.Path(), "can't be renamed"},
      {2, "System", fonts_ / "x", "no library 2"},
      {99, "Gone", fonts_ / "x", "no library 99"},
  };
  for (const auto& row : refused) {
    const Json reply = Put(client, row.id, row.name, {row.folder});
    EXPECT_EQ(reply["code"], kInvalidParam) << row.name;
    EXPECT_THAT(reply["result"]["problem"], HasSubstr(row.problem)) << row.name;
  }
  EXPECT_THAT(Seen(false), ElementsAre("1 3 Font Library"));
}

TEST_F(Workgroups, RightsAreTakenAwayStoredAndGivenBack) {
  EXPECT_EQ(vpi_.RegisterForNotifications(Handle(), &Recorder::Callback), 0u);
  const uint32_t font = FontNamed("LiberationSerif-Bold");
  constexpr const char* kExport = "ExportFonts";
  constexpr const char* kAcross = "CanActivateAcrossWorkgroups";
  EXPECT_TRUE(Holds(kExport, 1) && Holds(kExport, 0) && Holds(kAcross, 0));
  RawClient client(state_ / "run");
  const auto change = [&](const char* call, const char* right, uint32_t workgroup) {
    return client.Ask(call, {{"right", right}, {"workgroupID", workgroup}})["code"].get<uint32_t>();
  };
  EXPECT_EQ(change("DenyRight", kExport, 1), 0u);
  EXPECT_TRUE(recorder_.Await(PluginInterface::kUserPermissionsChanged));
  EXPECT_EQ(change("DenyRight", kAcross, 0), 0u);
  EXPECT_EQ(change("DenyRight", kAcross, 1), kInvalidParam) << "it is held for all workgroups or not at all";
  EXPECT_EQ(change("DenyRight", kExport, 99), kInvalidParam);
  EXPECT_EQ(change("DenyRight", "RuleTheWorld", 0), kInvalidParam);

  End(SIGKILL);
  Launch();
  vpi_.ResetPluginFacadeInstance();
  EXPECT_FALSE(Holds(kExport, 1) || Holds(kExport, 0) || Holds(kAcross, 0) || Holds("RuleTheWorld", 0));
  EXPECT_TRUE(Holds(kExport, 2));
  int32_t can = 99;
  EXPECT_EQ(vpi_.CanExportFonts(Handle(), 1, &font, &can), 0u);
  EXPECT_EQ(can, 0);
  EXPECT_EQ(vpi_.ExportFonts(Handle(), 1, &font, (state_ / "copies").c_str(), 0, 0),
            uint32_t{agent_protocol::kNotGrantedExport});
  EXPECT_TRUE(fs::is_empty(state_ / "copies"));

  RawClient second(state_ / "run");
  EXPECT_EQ(second.Ask("GetDeniedRights")["result"]["denied"].size(), 2u);
  for (const char* right : {kExport, kAcross}) {
    EXPECT_EQ(second.Ask("AllowRight", {{"right", right}, {"workgroupID", 0}})["code"], 0);
    EXPECT_TRUE(Holds(right, 0));
  }
  EXPECT_EQ(vpi_.ExportFonts(Handle(), 1, &font, (state_ / "copies").c_str(), 0, 0), 0u);
}

}  // namespace
