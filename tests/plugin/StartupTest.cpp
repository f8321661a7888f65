// What a start finds and shows, and which services it enables.
#include "Bridge/VPILoader.h"
#include "Readers/CommonFunctionality.h"
#include "Services/DiagnosticLog.h"
#include "platform/Presenter.h"
#include "plugin/HostFixture.h"

namespace {

class StartupFixture : public HostFixture {
 protected:
  StartupFixture() {
    CommonFunctionality::ResetForTesting();
    static const platform::Presenter sPresenter = {nullptr, [](void*, platform::ValueRef) -> platform::ValueRef {
                                                     ++sPlainAlerts;
                                                     return nullptr;
                                                   }};
    sPlainAlerts = 0;
    platform::SetPresenter(&sPresenter);
    Identify();
  }
  ~StartupFixture() override {
    platform::SetPresenter(nullptr);
    CommonFunctionality::ResetForTesting();
  }
  static void Identify() {
    MarquineGlobals::IdentifyPluginHostApp(platform::String::FromUTF8("PhotoshopCC2020"));
    MarquineGlobals::IdentifyPluginBundleID("com.velorant.AutoActivationPlugin.PS21");
  }
  static std::string Flags() {
    std::string flags;
    if (MarquineGlobals::sPluginServicesEnabled) flags += "S";
    if (MarquineGlobals::sConnectedToCore) flags += "C";
    if (MarquineGlobals::sLoggedIn) flags += "L";
    if (MarquineGlobals::sUserHasWorkgroups) flags += "W";
    return flags;
  }
  inline static int sPlainAlerts = 0;
};
using Startup = StartupFixture;

struct StartupCase {
  const char* rule;
  void (*change)(fakes::FakeAgent& agent, fakes::FakeUIFramework& ui);
  TModuleErrorCode code;
  const char *flags, *boxes;  // services, core, logged in, workgroups
  int plainAlerts;
};

void NoChange(fakes::FakeAgent&, fakes::FakeUIFramework&) {}
void NoAgentLibrary(fakes::FakeAgent&, fakes::FakeUIFramework&) { VPILoader::UseEmptyTableForTesting(); }
void NoLogin(fakes::FakeAgent& agent, fakes::FakeUIFramework&) { agent.isStandalone = agent.isLoggedIn = false; }
void NoWorkgroups(fakes::FakeAgent& agent, fakes::FakeUIFramework&) {
  agent.isStandalone = agent.mayUseAllWorkgroups = false;
  agent.workgroups.clear();
}
void SwitchedOff(fakes::FakeAgent& agent, fakes::FakeUIFramework& ui) {
  NoWorkgroups(agent, ui);
  ui.preferences["EnablePlugin"] = 0;
}
void NoInterface(fakes::FakeAgent&, fakes::FakeUIFramework&) { MarquineGlobals::SetNoVPFInterfaceForTesting(); }
void NoFramework(fakes::FakeAgent&, fakes::FakeUIFramework& ui) { ui.interface->DestroyFramework(); }

const StartupCase kStartupCases[] = {
    {"all is there", NoChange, 0, "SCLW", "", 0},
    {"no agent library", NoAgentLibrary, 0x15000000, "LW", "box MarquineOldVersionMessage", 0},
    {"nobody logged in", NoLogin, 3, "SCW", "box NotLoggedInPluginDisabledMessage", 0},
    {"no workgroups", NoWorkgroups, 4, "SCL", "box NoWorkgroupsMessage", 0},
    {"nobody asks while the plug-in is off", SwitchedOff, 0, "SCLW", "", 0},
    {"no interface at all", NoInterface, 2, "LW", "", 0},
    {"an interface without its framework", NoFramework, 0, "LW", "", 1},
};

TEST_F(Startup, FollowsTheTable) {
  for (const bool allowsDialogs : {true, false}) {
    for (const StartupCase& row : kStartupCases) {
      SCOPED_TRACE(row.rule);
      CommonFunctionality::ResetForTesting();
      FontManagerInterface::ResetForTesting();
      MarquineGlobals::ResetForTesting();
      Identify();
      sPlainAlerts = 0;
      agent.isStandalone = agent.isLoggedIn = agent.mayUseAllWorkgroups = true;
      agent.workgroups = {{5, "Library", "1"}};
      fakes::InstallFakeAgentTable();
      ui.reset();  // before the new one replaces it
      ui = std::make_unique<fakes::FakeUIFramework>();
      row.change(agent, *ui);
      EXPECT_EQ(CommonFunctionality::Startup(allowsDialogs), row.code);
      EXPECT_EQ(Flags(), row.flags);
      EXPECT_EQ(Shown(), allowsDialogs ? row.boxes : "");
      EXPECT_EQ(sPlainAlerts, allowsDialogs ? row.plainAlerts : 0);
    }
  }
}

TEST_F(Startup, AndShutdownWorkOnce) {
  EXPECT_EQ(CommonFunctionality::Startup(true), 0u);
  MarquineGlobals::SetLoggedIn(false);
  EXPECT_EQ(CommonFunctionality::Startup(true), 0x15000000u);
  EXPECT_TRUE(Traced("Early return from Startup() because it has been called 2 times"));
  EXPECT_FALSE(MarquineGlobals::sLoggedIn);
  EXPECT_EQ(CommonFunctionality::Shutdown(), 0u);
  EXPECT_EQ(FontManagerInterface::sm_pFontManager, nullptr);
  EXPECT_EQ(CommonFunctionality::Shutdown(), 0x15000000u);
}

TEST_F(Startup, NamesTheLogAfterTheHostAndWritesItsHeaderInAnyCase) {
  for (const bool isLogging : {false, true}) {
    CommonFunctionality::ResetForTesting();
    agent.log.clear();
    ui->preferences["EnableLogging"] = isLogging;
    MarquineGlobals::IdentifyPluginHostApp(platform::String::FromUTF8("PhotoshopCC2020"));
    CommonFunctionality::Startup(false);
    OutputFormattedDebugString("%d line", 1);
    OutputFormattedDebugString("another\n");
    StopLogging();
    OutputSimpleDebugString("");
    EXPECT_TRUE(agent.log.starts_with("PhotoshopCC2020.log\n\n=======\n")) << agent.log;
    EXPECT_EQ(agent.log.find("=======\n1 line\nanother\n") != std::string::npos, isLogging) << agent.log;
    EXPECT_EQ(agent.log.find("line") != std::string::npos, isLogging) << agent.log;
  }
}

TEST_F(Startup, WritesDefaultsOnlyWhereNoPreferencesExist) {
  ui->preferences = {{"PickBestMatch", 0}};
  CommonFunctionality::InitializeCommonPreferences();
  EXPECT_EQ(ui->preferences.size(), 1u);
  ui->preferences.clear();
  CommonFunctionality::InitializeCommonPreferences();
  EXPECT_EQ(ui->preferences.size(), 12u);
  EXPECT_EQ(ui->preferences["CloseFontsOnHostAppQuit"], 1);
  EXPECT_EQ(ui->preferences["CloseFontsOnDocClose"], 0);
  EXPECT_EQ(ui->preferences["CS5PanelWidth"], 260);
}

}  // namespace
