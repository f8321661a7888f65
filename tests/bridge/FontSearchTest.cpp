// Finding the candidates for a document's font, and choosing the workgroup to search.
#include <cstring>
#include <functional>

#include "support/PluginFixture.h"
#include "support/Records.h"

using namespace fakes;
using platform::Array;
using platform::Dictionary;

namespace {

class FontSearch : public PluginFixture {
 protected:
  // The IDs that were found, best first, and the status.
  std::string Find(const Dictionary& font, TypeOfFontName kind = GlyphsureSupport::kPostScriptName) {
    Array found = Array::Create();
    isExcluded = false;
    status = FontManagerInterface::sm_pFontManager->GetGlyphsureData(font, kind, isExcluded, -2, &found);
    std::string ids;
    for (size_t i = 0; i < found.Count(); ++i) {
      ids += (i == 0 ? "" : " ") + Dictionary(found.At(i)).GetString("DatabaseID").Text();
    }
    return ids;
  }

  int status = 0;
  bool isExcluded = false;
};

}  // namespace

TEST_F(FontSearch, NamesAreRetriedWithLessAndLess) {
  agent.Add({.id = 1, .postScriptName = "TimesNew", .family = "Times New"});
  agent.Add({.id = 2, .postScriptName = "Sans-Bold", .family = "Sans Pro"});
  agent.Add({.id = 3, .postScriptName = "Sans-Bold", .family = "Sans Pro", .version = "3.0"});
  Connect();
  const struct {
    const char* why;
    const char* name;
    const char* expected;
  } rows[] = {
      {"as it is", "Sans-Bold", "3 2"},
      {"without illegal characters", "Times New", "1"},
      {"without a subset tag", "ABCDEF+Sans-Bold", "3 2"},
      {"without a style", "Sans-Bold_Caps", "3 2"},
      {"as a family, blanks for hyphens", "Sans-Pro-Heavy", "3 2"},
      {"nowhere", "Nowhere-At-All", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Find(Named(row.name)), row.expected) << row.why;
    EXPECT_EQ(status, 0) << row.why;
  }
  EXPECT_EQ(Find(Record({{"Family", "Sans Pro"}}), GlyphsureSupport::kFamilyName), "3 2");
  EXPECT_EQ(Find(Record({{"Family", "Sans Pro"}})), "");
  EXPECT_EQ(status, -1) << "no name of this kind";
  EXPECT_EQ(Find(Named(std::string(128, 'x'))), "");
  EXPECT_EQ(status, -1) << "too long to be looked up";
}

namespace {

// A manager whose identification data have neither ID nor state.
class TersestManager : public CoreAgentInterface {
 public:
  int GetGlyphsureInfo(unsigned, const Dictionary&, char* xmlBuffer, unsigned long*) override {
    std::strcpy(xmlBuffer, "<plist version=\"1.0\"><array><dict/></array></plist>");
    return 0;
  }
};

}  // namespace

TEST_F(FontSearch, RecordsCarryIDAndStateOfTheirFontWhateverTheirDataSays) {
  agent.Add({.id = 7, .postScriptName = "A"});
  FontManagerInterface::sm_pFontManager = std::make_unique<TersestManager>();
  const struct {
    int agentState;
    const char *state, *isActive, *isTemp;
  } rows[] = {{0, "1", "0", "0"}, {1, "3", "1", "1"}, {4, "2", "1", "0"}, {7, "0", "0", "0"}};
  for (const auto& row : rows) {
    agent.Font(7).ownState = row.agentState;
    Array found = Array::Create();
    FontManagerInterface::sm_pFontManager->GetGlyphsureData(Named("A"), GlyphsureSupport::kPostScriptName, isExcluded,
                                                            -2, &found);
    EXPECT_TRUE(Dictionary(found.At(0))
                    .Equals(Record({{"DatabaseID", "7"},
                                    {"IsTemp", row.isTemp},
                                    {"IsActive", row.isActive},
                                    {"ActivationStatus", row.state}})))
        << row.agentState;
  }
}

TEST_F(FontSearch, WebFontsThatAreSwitchedOffAreExcluded) {
  agent.Add({.id = 1, .postScriptName = "A", .workgroupType = "8"});
  Connect();
  EXPECT_EQ(Find(Named("A")), "");
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(isExcluded);
  agent.isWebFontsEnabled = true;
  EXPECT_EQ(Find(Named("A")), "1");
  EXPECT_FALSE(isExcluded);
}

TEST_F(FontSearch, LostConnectionEndsTheSearchAndOtherFaultsDoNot) {
  for (uint32_t id = 1; id <= 3; ++id) agent.Add({.id = id, .postScriptName = "A"});
  Connect();
  agent.FailNext(AgentFunction::GetFontInfoByID, 7);
  EXPECT_EQ(Find(Named("A")), "2 3");
  EXPECT_EQ(status, 0);
  for (const uint32_t code : {0, 0, 7}) agent.FailNext(AgentFunction::GetFontInfoByID, code);
  EXPECT_EQ(Find(Named("A")), "1 2");
  EXPECT_EQ(status, 7) << "the last font's status is the search's";
  agent.FailNext(AgentFunction::GetFontInfoByID, 1000);
  agent.calls.clear();
  EXPECT_EQ(Find(Named("A")), "");
  EXPECT_EQ(status, 1000);
  EXPECT_EQ(agent.Count("GetFontInfoByID"), 1u);
}

TEST_F(FontSearch, WorkgroupIsChosenByWhatTheUserHas) {
  const struct {
    const char* why;
    std::vector<FakeWorkgroup> workgroups;
    bool mayUseAll;
    int current;
    int chosen;
    bool isValid;
  } rows[] = {
      {"the current one stays", {{5, "A", "1"}, {6, "B", "1"}}, false, 6, 6, true},
      {"all of them", {{5, "A", "1"}, {6, "B", "1"}}, true, 9, -2, true},
      {"the only one", {{5, "A", "1"}}, false, 0, 5, true},
      {"several and no right to all", {{5, "A", "1"}, {6, "B", "1"}}, false, 0, 0, false},
      {"all without the right", {{5, "A", "1"}, {6, "B", "1"}}, false, -2, -2, false},
      {"none", {}, false, 0, 0, false},
  };
  for (const auto& row : rows) {
    FontManagerInterface::ResetForTesting();
    MarquineGlobals::SetUserHasWorkgroups(true);
    agent.workgroups = row.workgroups;
    agent.mayUseAllWorkgroups = row.mayUseAll;
    ui->preferences["CurrentWorkgroup"] = row.current;
    Connect();
    EXPECT_EQ(ui->preferences["CurrentWorkgroup"], row.chosen) << row.why;
    EXPECT_EQ(FontManagerInterface::sValidWorkgroupSelected, row.isValid) << row.why;
  }
}

TEST_F(FontSearch, SelectingAWorkgroupKeepsOrFallsBack) {
  Connect();
  const struct {
    const char* why;
    std::vector<FakeWorkgroup> workgroups;
    bool mayUseAll, isStandalone;
    int current, chosen;
    bool hasWorkgroups;
    std::vector<std::string> shown;
  } rows[] = {
      {"current in the list", {{5, "A", "1"}, {6, "B", "1"}}, true, true, 6, 6, true, {}},
      {"all before the first", {{5, "A", "1"}, {6, "B", "1"}}, true, true, 9, -2, true, {}},
      {"the first", {{5, "A", "1"}, {6, "B", "1"}}, false, true, 9, 5, true, {}},
      {"none, standalone", {}, false, true, 5, 0, true, {}},
      {"none on a server", {}, false, false, 5, 0, false, {"box NoWorkgroupsMessage"}},
  };
  for (const auto& row : rows) {
    agent.workgroups = row.workgroups;
    agent.mayUseAllWorkgroups = row.mayUseAll;
    agent.isStandalone = row.isStandalone;
    ui->preferences["CurrentWorkgroup"] = row.current;
    MarquineGlobals::SetUserHasWorkgroups(true);
    FontManagerInterface::sValidWorkgroupSelected = true;
    FontManagerInterface::sm_pFontManager->HandleSelectWorkgroup();
    EXPECT_EQ(ui->preferences["CurrentWorkgroup"], row.chosen) << row.why;
    EXPECT_EQ(MarquineGlobals::sUserHasWorkgroups, row.hasWorkgroups) << row.why;
    EXPECT_EQ(ui->TakeShown(), row.shown) << row.why;
  }
  MarquineGlobals::SetUserHasWorkgroups(false);
  FontManagerInterface::sValidWorkgroupSelected = true;
  EXPECT_TRUE(FontManagerInterface::CheckSelectWorkgroup());
  EXPECT_TRUE(MarquineGlobals::sUserHasWorkgroups) << "the first thing it does";
}

namespace {

class UnconnectedManager : public CoreAgentInterface {
 public:
  bool IsFontManagerConnected() override { return false; }
};

}  // namespace

TEST_F(FontSearch, NoWorkgroupIsSelectedWhereNothingCanWork) {
  ui->preferences["CurrentWorkgroup"] = 9;
  agent.mayUseAllWorkgroups = false;
  const struct {
    const char* why;
    std::function<void()> prepare;
    bool result;
    int workgroup;  // 9: unchanged
  } rows[] = {
      {"all is well", [] {}, true, 5},
      {"services are off", [] { MarquineGlobals::SetPluginServicesEnabled(false); }, false, 9},
      {"switched off", [this] { ui->preferences["EnablePlugin"] = 0; }, false, 9},
      {"no manager", [] { FontManagerInterface::sm_pFontManager.reset(); }, false, 9},
      {"not logged in", [this] { agent.isStandalone = agent.isLoggedIn = false; }, false, 9},
      {"not connected", [] { FontManagerInterface::sm_pFontManager = std::make_unique<UnconnectedManager>(); }, true,
       9},
      {"no user interface", [] { MarquineGlobals::SetNoVPFInterfaceForTesting(); }, false, 9},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.why);
    MarquineGlobals::SetSharedVPFInterfaceForTesting(ui->interface.get());
    agent.isStandalone = agent.isLoggedIn = true;
    agent.workgroups = {{5, "A", "1"}, {6, "B", "1"}};
    ui->preferences["EnablePlugin"] = 1;
    ui->preferences["CurrentWorkgroup"] = 9;
    Connect();
    row.prepare();
    FontManagerInterface::sValidWorkgroupSelected = false;
    MarquineGlobals::SetUserHasWorkgroups(false);
    EXPECT_EQ(FontManagerInterface::CheckSelectWorkgroup(), row.result);
    EXPECT_TRUE(MarquineGlobals::sUserHasWorkgroups);
    EXPECT_EQ(ui->preferences["CurrentWorkgroup"], row.workgroup);
    EXPECT_EQ(FontManagerInterface::sValidWorkgroupSelected, row.workgroup == 5);
  }
  // If the user interface does not work, the selection drops the workgroup.
  VPFInterface invalid;
  MarquineGlobals::SetSharedVPFInterfaceForTesting(&invalid);
  FontManagerInterface::sm_pFontManager->HandleSelectWorkgroup();
  EXPECT_FALSE(FontManagerInterface::sValidWorkgroupSelected);
}

TEST_F(FontSearch, WebFontsAreCandidatesWhileTheyAreEnabled) {
  CoreAgentInterface& manager = Connect();
  for (const bool isEnabled : {false, true}) {
    agent.isWebFontsEnabled = isEnabled;
    const Array fonts = ArrayOf({Record({{"WorkgroupType", "8"}}), Record({{"WorkgroupType", "1"}})});
    EXPECT_EQ(manager.RemoveRemoteFonts(fonts), 0);
    EXPECT_EQ(Dictionary(fonts.At(0)).GetString("WorkgroupType").View(), isEnabled ? "8" : "1");
  }
}

TEST_F(FontSearch, ManagerIsMadeOnceAndTellsItsState) {
  const std::string* bundleName = nullptr;
  bool isRunning = false;
  VPILoader::GetSharedInstance()->SetMissingFunctionsForTesting(1);
  const auto online = VPILoader::GetSharedInstance()->pfGetIsOnline;
  VPILoader::GetSharedInstance()->pfGetIsOnline = nullptr;
  agent.isProcessRunning = false;
  EXPECT_EQ(FontManagerInterface::CompatibleFontManagerIsRunning(&bundleName, isRunning),
            CoreErrorCodes::kVersionMismatch);
  EXPECT_FALSE(isRunning);
  EXPECT_EQ(*bundleName, "MarquinePrimePlugin");
  const FontManagerInterface* const manager = FontManagerInterface::sm_pFontManager.get();
  ASSERT_NE(manager, nullptr);
  EXPECT_EQ(FontManagerInterface::CompatibleFontManagerIsRunning(nullptr, isRunning), CoreErrorCodes::kUnknownError);
  agent.isProcessRunning = true;
  EXPECT_EQ(FontManagerInterface::CompatibleFontManagerIsRunning(nullptr, isRunning), CoreErrorCodes::kSuccess);
  EXPECT_TRUE(isRunning);
  EXPECT_EQ(FontManagerInterface::sm_pFontManager.get(), manager);
  VPILoader::GetSharedInstance()->pfGetIsOnline = online;
  VPILoader::GetSharedInstance()->SetMissingFunctionsForTesting(0);

  FontManagerInterface::ResetForTesting();
  agent.isStandalone = agent.isLoggedIn = false;
  EXPECT_EQ(FontManagerInterface::CompatibleFontManagerIsRunning(&bundleName, isRunning), 3u) << "nobody is logged in";
  EXPECT_TRUE(isRunning);
  EXPECT_EQ(*bundleName, "HarbinetPlugin");
  EXPECT_FALSE(FontManagerInterface::AutoActivationIsReady());
}
