// Connecting to the agent, relaunching it, and handling its replies.
#include <unistd.h>

#include <cstdlib>

#include "platform/Clock.h"
#include "platform/Presenter.h"
#include "support/PluginFixture.h"
#include "support/Records.h"

using namespace fakes;
using platform::Array;
using platform::Dictionary;
using Shown = std::vector<std::string>;
using Numbers = std::vector<uint32_t>;

namespace {

class CoreAgent : public PluginFixture {
 protected:
  CoreAgent() {
    for (uint32_t id = 1; id <= 3; ++id) agent.Add({.id = id, .postScriptName = "Font" + std::to_string(id)});
  }
  ~CoreAgent() override { platform::Clock::UseSystemTime(); }

  static platform::String Text(const char* text) { return platform::String::FromUTF8(text); }
  static Array Fonts(std::initializer_list<const char*> ids) {
    Array fonts = Array::Create();
    for (const char* id : ids) fonts.Append(Record({{"DatabaseID", id}}));
    return fonts;
  }
};

}  // namespace

TEST_F(CoreAgent, ConnectionResultDecidesWhatIsShownAndWhatWorks) {
  const struct {
    uint32_t code;
    const char* line;
    Shown shown;
  } rows[] = {
      {0, "GZephyneSdk::Initialize SUCCEEDED.", {}},
      {0x02002005, "Core Agent process not found", {"box FontManagerNotFoundMessage"}},
      {0x02007005, "Core Agent process not found", {"box FontManagerNotFoundMessage"}},
      {0x03002005, "Core Agent process running in wrong mode", {}},
      {0x03007005, "Core Agent process running in wrong mode", {}},
      {0x02002008,
       "GZephyneSdk::Initialize FAILED, error code = 33562632 (GZephyneSdk::kVaultInUse).",
       {"box CouldNotOpenVaultInUseLaunchPrefs"}},
      {0x7, "GZephyneSdk::Initialize FAILED, error code = 7.", {"box CouldNotOpenVaultLaunchPrefs"}},
  };
  for (const auto& row : rows) {
    FontManagerInterface::ResetForTesting();
    MarquineGlobals::SetLoggedIn(false);
    trace.clear();
    agent.callback = nullptr;
    agent.initThreadResult = row.code;
    Connect();
    EXPECT_TRUE(Traced(row.line)) << row.line;
    EXPECT_EQ(ui->TakeShown(), row.shown) << row.line;
    for (const bool flag :
         {MarquineGlobals::sPluginServicesEnabled, MarquineGlobals::sConnectedToCore, MarquineGlobals::sLoggedIn}) {
      EXPECT_EQ(flag, row.code == 0) << row.line;
    }
    EXPECT_NE(agent.callback, nullptr) << "after any of them";
  }
}

TEST_F(CoreAgent, SchemaOrProcessThatFailsEndsTheConnection) {
  agent.initAppResult = 1;
  Connect();
  EXPECT_TRUE(ui->TakeShown().empty()) << "in step, so nothing is wrong";
  agent.areSchemasInSync = false;
  Connect();
  EXPECT_TRUE(MarquineGlobals::GetDisplayedSchemaError());
  EXPECT_EQ(ui->TakeShown(), Shown{"box VaultNeedsUpgradeMessage"});
  EXPECT_EQ(agent.callback, nullptr);

  agent.initAppResult = 0;
  for (const bool isSuppressed : {false, true}) {
    ui->preferences["SuppressPluginCoreDialogs"] = isSuppressed;
    agent.FailNext(AgentFunction::GetIsCoreAgentProcessRunning, 5);
    Connect();
    EXPECT_EQ(ui->TakeShown(), isSuppressed ? Shown{} : Shown{"box FontManagerNotFoundMessage"});
    EXPECT_FALSE(MarquineGlobals::sConnectedToCore);
    EXPECT_EQ(agent.callback, nullptr);
  }
}

TEST_F(CoreAgent, GoneAgentIsRelaunchedAndAskedOnlyAtTheSecondFailure) {
  constexpr uint32_t kGone[] = {0x0200200D, 0x02005001, 0x0300100E};
  const struct {
    size_t failures;
    bool isSuppressed;
    Shown shown;
  } rows[] = {{1, false, {}},
              {2, false, {"box FontManagerNotFoundMessage"}},
              {5, false, {"box FontManagerNotFoundMessage"}},
              {5, true, {}}};
  CoreAgentInterface& manager = Connect();
  for (const auto& row : rows) {
    ui->preferences["SuppressPluginCoreDialogs"] = row.isSuppressed;
    for (size_t i = 0; i < row.failures; ++i) agent.FailNext(AgentFunction::ActivateFonts, kGone[i % 3]);
    agent.calls.clear();
    const auto facade = agent.facade;
    EXPECT_EQ(manager.ActivateFontByID(Record({{"DatabaseID", "1"}}), "", nullptr), 0);
    EXPECT_EQ(agent.Count("ActivateFonts"), row.failures + 1);
    EXPECT_EQ(agent.facade, facade + row.failures) << "each relaunch replaces the handle";
    EXPECT_EQ(ui->TakeShown(), row.shown);
  }
  agent.FailNext(AgentFunction::ActivateFonts, 0x02002000);
  EXPECT_EQ(manager.ActivateFontByID(Record({{"DatabaseID", "1"}}), "", nullptr), -1) << "another code is no reason";
  EXPECT_TRUE(MarquineGlobals::sPluginServicesEnabled);
}

TEST_F(CoreAgent, PreferencesChooseTheKindOfActivation) {
  const struct {
    bool locally, globally;
    size_t activations, previews;
  } rows[] = {{false, false, 1, 0}, {false, true, 1, 0}, {true, false, 0, 1}, {true, true, 1, 1}};
  CoreAgentInterface& manager = Connect();
  for (const auto& row : rows) {
    ui->preferences["ActivateLocally"] = row.locally;
    ui->preferences["ActivateGlobally"] = row.globally;
    agent.calls.clear();
    agent.arguments.clear();
    const Array activated = Array::Create();
    EXPECT_EQ(manager.ActivateFontsByID(Fonts({"1", "2"}), "", nullptr, activated, Array(), nullptr, nullptr), 0);
    EXPECT_EQ(activated.Count(), 2u);
    EXPECT_EQ(agent.Count("ActivateFonts"), row.activations);
    EXPECT_EQ(agent.Count("PreviewActivateFonts"), row.previews);
    // An ordinary activation, with room to report both fonts as failed and as refused.
    EXPECT_EQ(agent.arguments[AgentFunction::ActivateFonts],
              row.activations > 0 ? (Numbers{0, 1, 1, 1, 2, 2}) : Numbers());
  }
  EXPECT_EQ(manager.ActivateFontsByID(Array(), "", nullptr, Array(), Array(), nullptr, nullptr), 0);
  EXPECT_TRUE(Traced("CoreAgentInterface::ActivateFontsByID -- empty fonts vector, doing nothing."));
}

TEST_F(CoreAgent, FailedAndRefusedFontsAreToldApart) {
  CoreAgentInterface& manager = Connect();
  agent.Font(1).fails = true;
  agent.Font(2).isRefused = true;
  const Array activated = Array::Create(), refused = Array::Create();
  EXPECT_EQ(manager.ActivateFontsByID(Fonts({"1", "2", "3"}), "", nullptr, activated, refused, nullptr, nullptr), 0);
  EXPECT_EQ(activated.Count(), 2u);
  ASSERT_EQ(refused.Count(), 1u);
  EXPECT_EQ(Dictionary(refused.At(0)).GetString("DatabaseID").View(), "2");
  agent.FailNext(AgentFunction::DeactivateFonts, 9);
  const Array deactivated = Array::Create();
  EXPECT_EQ(manager.DeactivateFonts(Fonts({"3"}), nullptr, deactivated, nullptr, nullptr), -1);
  EXPECT_EQ(manager.DeactivateFonts(Fonts({"3"}), nullptr, deactivated, nullptr, nullptr), 0);
  EXPECT_EQ(deactivated.Count(), 1u);
  EXPECT_EQ(manager.DeactivateFonts(Array(), nullptr, deactivated, nullptr, nullptr), 0);
}

TEST_F(CoreAgent, APreviewCountsTheFontsThatAreActive) {
  CoreAgentInterface& manager = Connect();
  ui->preferences["ActivateLocally"] = 1;
  agent.Font(2).fails = true;
  const struct {
    std::initializer_list<const char*> fonts;
    int status;
    size_t activated;
  } rows[] = {{{"1", "2", "3"}, 0, 2}, {{"2"}, -1, 0}};
  for (const auto& row : rows) {
    const Array activated = Array::Create();
    EXPECT_EQ(manager.ActivateFontsByID(Fonts(row.fonts), "", nullptr, activated, Array(), nullptr, nullptr),
              row.status);
    EXPECT_EQ(activated.Count(), row.activated);
  }
}

TEST_F(CoreAgent, NameOfSeveralFontsActivatesNothing) {
  agent.Add({.id = 9, .postScriptName = "Font1"});
  CoreAgentInterface& manager = Connect();
  unsigned long fontID = 77;
  EXPECT_EQ(manager.ActivateFontByName("Font1", -2, "", &fontID), 0);
  EXPECT_EQ(fontID, 0u);
  EXPECT_EQ(manager.ActivateFontByName("Font2", -2, "", &fontID), 0);
  EXPECT_EQ(fontID, 2u);
  EXPECT_EQ(manager.ActivateFontByName("Font2", -2, "", nullptr), -50);
  EXPECT_FALSE(agent.Font(1).isHeld);
  EXPECT_TRUE(agent.Font(2).isHeld);
  std::string scratch;
  FontOrSetInfoRec record;
  constexpr auto kOtherKind = static_cast<GlyphsureSupport::TypeOfFontName>(2);
  EXPECT_EQ(manager.GetNamedFontInfo("Font2", GlyphsureSupport::kPostScriptName, -2, 1, scratch, &record), 0);
  EXPECT_EQ(manager.GetNamedFontInfo("Font2", kOtherKind, -2, 1, scratch, &record), -1);
}

TEST_F(CoreAgent, AgentIsAskedAboutTheRequestedWorkgroupsAndFonts) {
  constexpr uint32_t kAnyWorkgroup = 0, kNoWorkgroup = UINT32_MAX;
  const struct {
    int current, requested;
    uint32_t lookUp, family, right;
  } rows[] = {{5, -2, kAnyWorkgroup, 0, 5}, {5, 5, kNoWorkgroup, 5, 5}, {-2, 5, kAnyWorkgroup, 5, 0}};
  CoreAgentInterface& manager = Connect();
  for (const auto& row : rows) {
    ui->preferences["CurrentWorkgroup"] = row.current;
    agent.arguments.clear();
    FontOrSetInfoRec record;
    EXPECT_EQ(
        manager.GetFontInfoByID(Record({{"DatabaseID", "1"}, {"WorkgroupID", std::to_string(row.requested)}}), &record),
        0);
    EXPECT_EQ(agent.arguments[AgentFunction::GetFontInfoByID], Numbers{row.lookUp});
    Array family = Array::Create();
    manager.FindFontsInSameFamilyForActivation(record.fontInfo, Array::Create(), row.requested, &family);
    EXPECT_EQ(agent.arguments[AgentFunction::FindFontsInSameFamilyForActivation], Numbers{row.family});
    EXPECT_TRUE(manager.CanExportFromWorkgroup(Fonts({"1", "3"})));
    const bool asksAboutFonts = row.current == -2;
    EXPECT_EQ(agent.arguments[AgentFunction::CanExportFonts], asksAboutFonts ? (Numbers{1, 3}) : Numbers{});
    EXPECT_EQ(agent.arguments[AgentFunction::GetPermission], asksAboutFonts ? Numbers{} : (Numbers{1, row.right}));
  }
  manager.CanActivateFromAllWorkgroups();
  EXPECT_EQ(agent.arguments[AgentFunction::GetPermission], (Numbers{1, kAnyWorkgroup}));
}

TEST_F(CoreAgent, AgentStatesBecomeThePluginsStates) {
  constexpr int kExpected[] = {1, 3, 3, 3, 2, 2, 2, 0, 0, 3, 3, 2, 0};
  for (int state = 0; state <= 12; ++state) {
    const Dictionary record = Record({{"ActivationStatus", std::to_string(state)}});
    EXPECT_EQ(CoreAgentInterface::ConvertActivationStateValues(record), 0);
    const int expected = kExpected[state];
    EXPECT_TRUE(record.Equals(Record({{"ActivationStatus", std::to_string(expected)},
                                      {"IsTemp", expected == 3 ? "1" : "0"},
                                      {"IsActive", expected >= 2 ? "1" : "0"},
                                      {"IsAutoActivated", state == 1 || state == 2 ? "1" : "0"}})))
        << state;
  }
  EXPECT_EQ(CoreAgentInterface::ConvertActivationStateValues(Dictionary()), -1);
  EXPECT_EQ(CoreAgentInterface::ComputePluginActivationState(-1), 0);
}

TEST_F(CoreAgent, RenamedWorkgroupReadsAsTypeZero) {
  agent.workgroups = {{5, "Mine", "1"}, {6, "Sys", "4"}, {7, "Lib", "3"}};
  CoreAgentInterface& manager = Connect();
  Array list;
  EXPECT_EQ(manager.GetAllWorkgroupsForUser(&list, true, true, false), 0);
  ASSERT_EQ(list.Count(), 4u);
  EXPECT_EQ(Dictionary(list.At(1)).GetString("WorkgroupName").View(), "SystemWorkgroup");
  EXPECT_EQ(Dictionary(list.At(1)).GetInteger("WorkgroupType"), 4);
  EXPECT_EQ(Dictionary(list.At(2)).GetString("WorkgroupName").View(), "Lib") << "not the default library";
  EXPECT_TRUE(Dictionary(list.At(3)).Equals(Record({{"WorkgroupName", "All Libraries"}, {"WorkgroupID", "-2"}})));
  EXPECT_EQ(manager.GetSystemWorkgroupID(), -1) << "its type is text no more";
  ui->preferences["CurrentWorkgroup"] = 7;
  EXPECT_TRUE(manager.IsSelectedWorkgroupLocal());
  agent.isStandalone = false;
  EXPECT_FALSE(manager.IsSelectedWorkgroupLocal()) << "renamed now";
  EXPECT_EQ(manager.GetAllWorkgroupsForUser(nullptr, true, true, false), -50);
  // Without a user interface nothing is renamed, and a name is searched in its workgroup and then in the system's.
  agent.Add({.id = 9, .postScriptName = "Font1", .workgroupID = 6});
  CoreAgentInterface::ResetForTesting();
  MarquineGlobals::SetNoVPFInterfaceForTesting();
  std::vector<uint64_t> ids{99};
  agent.Font(1).workgroupID = 7;
  EXPECT_EQ(manager.FontIDsForPostScriptName("Font1", 7, ids), 0);
  EXPECT_EQ(ids, (std::vector<uint64_t>{1, 9}));
}

TEST_F(CoreAgent, SetNamesAreCutByCharactersBeforeTheSetIsMade) {
  CoreAgentInterface& manager = Connect();
  ui->preferences["CurrentWorkgroup"] = 5;
  const auto repeated = [](const char* text, int count) {
    std::string all;
    while (count-- > 0) all += text;
    return all;
  };
  const struct {
    std::string typed;
    std::string made;
    Shown shown;
  } rows[] = {{repeated("x", 300), repeated("x", 255), {"ask", "box SetNameTooLongMessage"}},
              {repeated("é", 256), repeated("é", 255), {"ask", "box SetNameTooLongMessage"}},
              {repeated("é", 255), repeated("é", 255), {"ask"}},
              {"Poster", "Poster", {"ask"}}};
  const Array fonts = Fonts({"3", "2", "1"});
  Dictionary(fonts.At(1)).Set("IsSystem", "1");
  for (const auto& row : rows) {
    ui->typed = row.typed;
    EXPECT_EQ(manager.MakeSetForDocumentFonts(Text("Default"), fonts), -1);
    ASSERT_FALSE(agent.sets.empty());
    EXPECT_EQ(agent.sets.back(), row.made);
    EXPECT_EQ(agent.arguments[AgentFunction::CreateTopLevelSet], (Numbers{5, 0, 0, 3, 1})) << "no system fonts";
    EXPECT_EQ(ui->TakeShown(), row.shown);
  }
  manager.MakeSetForDocumentFonts(platform::String(), Fonts({"1"}));
  ui->typed = "";
  manager.MakeSetForDocumentFonts(Text("Default"), Fonts({"1"}));
  ui->preferences["CurrentWorkgroup"] = -2;
  manager.MakeSetForDocumentFonts(Text("Default"), Fonts({"1"}));
  EXPECT_EQ(agent.sets.size(), std::size(rows));
}

TEST_F(CoreAgent, CollectedFontsAndWhatFailsAreTold) {
  const struct {
    const char* folder;  // empty: cancelled
    std::initializer_list<const char*> fonts;
    AgentFunction called;
    uint32_t code;
    int status;
  } rows[] = {{"", {"1"}, AgentFunction::ExportFonts, 0, 0},
              {"/new", {"1", "2"}, AgentFunction::ExportFonts, 0, 0},
              {"/new", {"1"}, AgentFunction::ExportFonts, 5, -1},
              {"/new", {}, AgentFunction::OSCreateDirectory, 0, 0},
              {"/new", {}, AgentFunction::OSCreateDirectory, 5, -1}};
  CoreAgentInterface& manager = Connect();
  platform::Presenter presenter;
  const char* chosen = nullptr;
  presenter.context = &chosen;
  presenter.runBox = [](void* context, platform::ValueRef) {
    const char* text = *static_cast<const char**>(context);
    Dictionary answer = Record({{"Text", text}});
    answer.Set("Button", platform::Number::FromInteger(*text ? 1 : 0));
    return answer.Release();
  };
  platform::SetPresenter(&presenter);
  for (const auto& row : rows) {
    chosen = row.folder;
    agent.calls.clear();
    if (row.code != 0) agent.FailNext(row.called, row.code);
    EXPECT_EQ(manager.CollectFontsUsedByCurrentDocument("Poster", "", Fonts(row.fonts)), row.status);
    EXPECT_EQ(agent.Count(AgentAnswers::NameOf(row.called)), *row.folder ? 1u : 0u);
  }
  platform::SetPresenter(nullptr);
  EXPECT_EQ(agent.exported, (std::vector<uint32_t>{1, 2}));
}

TEST_F(CoreAgent, AgentIsLookedForEverySixSeconds) {
  platform::Clock::SetDriven(1000);
  CoreAgentInterface& manager = Connect();
  const auto looks = [&](double at) {
    platform::Clock::SetDriven(at);
    agent.calls.clear();
    manager.ProcessNotifications();
    return agent.Count("GetIsCoreAgentProcessRunning");
  };
  EXPECT_EQ(looks(1000), 1u);
  EXPECT_EQ(looks(1005), 0u);
  agent.FailNext(AgentFunction::GetIsCoreAgentProcessRunning, 1);
  agent.FailNext(AgentFunction::GetIsCoreAgentProcessRunning, 1);
  EXPECT_EQ(looks(1006), 3u);
  EXPECT_TRUE(MarquineGlobals::sConnectedToCore);
  agent.Kill(false);
  ui->onShown = [&] { EXPECT_FALSE(host.arePanelsEnabled) << "the panels are off before the box"; };
  EXPECT_EQ(looks(1012), 3u);
  EXPECT_FALSE(MarquineGlobals::sPluginServicesEnabled);
  EXPECT_EQ(ui->TakeShown(), Shown{"box FontManagerNotFoundMessage"});
  EXPECT_EQ(looks(1018), 0u) << "once it is gone nobody looks again";
}

TEST_F(CoreAgent, AnExitWithoutAShutdownAsksNothingOfTheAgent) {
  Connect();
  agent.onCall = [](AgentFunction) { _exit(9); };
  EXPECT_EXIT(std::exit(0), testing::ExitedWithCode(0), "");
  agent.onCall = nullptr;
}
