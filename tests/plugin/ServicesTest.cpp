// Message boxes, preferences and process-wide state.
#include "Bridge/CoreAgentNotifications.h"
#include "Services/MarquineGlobalsState.h"
#include "Services/ProgressProperties.h"
#include "plugin/HostFixture.h"

using platform::String;

namespace {

using Services = HostFixture;

TEST_F(Services, AnAbsentFrameworkAnswersEverythingHarmlessly) {
  VPFInterface absent, withoutFunctions(std::make_unique<VPFFunctionTable>());
  for (VPFInterface* interface : {static_cast<VPFInterface*>(nullptr), &absent, &withoutFunctions}) {
    const VPFInterfaceRef reference(interface);
    EXPECT_FALSE(reference->IsValid());
    EXPECT_FALSE(reference->IsShared());
    EXPECT_EQ(reference->LocalizedString("any key"), "any key");
    EXPECT_FALSE(reference->GetPreferenceForKey("EnablePlugin"));
    EXPECT_EQ(reference->GetLongPreferenceForKey("RMF5"), 0);
    EXPECT_FALSE(reference->GetStringPreferenceForKey("LastAddress"));
    EXPECT_FALSE(reference->DoPreferencesExist());
    EXPECT_EQ(reference->ShowMessageBox("h", "m", 2), 1) << "the first button";
    std::string text = "kept";
    EXPECT_EQ(reference->AskForOneString("", "", "", text), -1);
    EXPECT_EQ(text, "kept");
    EXPECT_EQ(reference->ShowSelectWorkgroup(platform::Array()), 0);
    int workgroup = 7;
    EXPECT_EQ(reference->ShowCommandBox(platform::Dictionary(), workgroup), 0);
    EXPECT_EQ(workgroup, 7);
    reference->SetPreferenceForKey("EnablePlugin", true);
    reference->ShowProgress(ProgressProperties(1));
    reference->HideProgress();
    reference->SetFontManagerBundleName("MarquinePrimePlugin");
  }
}

TEST_F(Services, BoxesHaveTheirTextsAndButtons) {
  using Show = bool (*)(VPFInterface&);
  const struct {
    Show show;
    const char *header, *message;
    int buttons;
  } kRows[] = {
      {[](VPFInterface& ui) { return ui.ShowNotLoggedInMessageBox(true); }, "NotLoggedInHeader",
       "NotLoggedInOfferLoginMessage", 2},
      {[](VPFInterface& ui) { return ui.ShowLoggedOffMessageBox(true); }, "LoggedOffHeader",
       "LoggedOffOfferLoginMessage", 2},
      {[](VPFInterface& ui) { return ui.ShowLoggedOffMessageBox(false), false; }, "LoggedOffHeader",
       "LoggedOffPluginDisabledMessage", 0},
      {[](VPFInterface& ui) { return ui.ShowSomeFontsOfflineMessageBox(); }, "SomeFontsOfflineHeader",
       "SomeFontsOfflineMessage", 2},
      {[](VPFInterface& ui) { return ui.ShowFontsMissingForExportMessageBox(false); }, "MissingFontsExportHeader",
       "MissingFontsExportMessage", 2},
      {[](VPFInterface& ui) { return ui.ShowFontsMissingForExportMessageBox(true); }, "MissingFontsExportHeader",
       "MissingFontsOfflineExportMessage", 2},
      {[](VPFInterface& ui) { return ui.ShowMustBeOnlineMessageBox(), false; }, "GoOnlineErrorHeader",
       "MustBeOnlineMessage", 0},
      {[](VPFInterface& ui) { return ui.ShowVaultClosedMessage(), false; }, "", "FontVaultClosedMsg", 0},
      {[](VPFInterface& ui) { return ui.ShowVaultInUseMessage("/v"), false; }, "", "CouldNotOpenVaultInUseLaunchPrefs",
       0},
  };
  for (const auto& row : kRows) {
    for (const int button : {1, 2}) {
      ui->button = button;
      EXPECT_EQ(row.show(*ui->interface), row.buttons == 2 && button == 1) << row.message;
      EXPECT_EQ(ui->TakeShown(), Lines{std::string("box ") + row.message});
      EXPECT_EQ(ui->header, row.header) << row.message;
      EXPECT_EQ(ui->buttonSet, row.buttons) << row.message;
    }
  }
}

TEST_F(Services, TheEditionChoosesTheWordsOfSomeBoxes) {
  VPFInterface& boxes = *ui->interface;
  const auto showAll = [&] {
    boxes.ShowNoWorkgroupsMessageBox();
    boxes.ShowCoreAgentMissingMessageBox();
    boxes.ShowCoreAgentOutOfSyncMessageBox();
    return ui->TakeShown();
  };
  EXPECT_TRUE(showAll().empty()) << "without a manager the edition is not known";
  for (const bool isStandalone : {true, false}) {
    agent.isStandalone = isStandalone;
    MakeReady();
    const std::string edition = isStandalone ? "box MP" : "box HB";
    EXPECT_EQ(showAll(), (Lines{isStandalone ? "box NoLibrariesMessage" : "box NoWorkgroupsMessage",
                                edition + "CoreAgentMissingMessage", edition + "CoreAgentOutOfSyncMessage"}));
    FontManagerInterface::ResetForTesting();
  }
}

TEST_F(Services, ProgressCountsDownInItsHeader) {
  FontProgressProperties progress(5, "Title", "%d to go");
  EXPECT_EQ(progress.GetProperties().GetStringForKey("Header").View(), "5 to go");
  progress.SetCurrentProgress(2);
  progress.SetCurrentPostscriptName("Alpha");
  EXPECT_EQ(progress.GetProperties().GetStringForKey("Header").View(), "3 to go");
  progress.SetCurrentProgress(5);
  EXPECT_EQ(progress.GetProperties().GetStringForKey("Header").View(), "3 to go") << "at the end it stays as it was";
  EXPECT_EQ(progress.GetProperties().GetIntForKey("CurrentProgress"), 5);
  EXPECT_EQ(progress.GetProperties().GetIntForKey("MaxProgress"), 5);
  EXPECT_EQ(progress.GetProperties().GetStringForKey("Status").View(), "Alpha");
  EXPECT_EQ(progress.GetProperties().GetIntForKey("IsIndeterminate"), 0);
}

TEST_F(Services, TheEndTakesThingsDownInOrder) {
  MakeReady();
  MarquineGlobals::IdentifyPluginHostApp(String::FromUTF8("PhotoshopCC2020"));
  MarquineGlobals::GetSharedFontActivationTracker();
  const MarquineGlobals::State& state = MarquineGlobals::GetState();
  agent.onCall = [&](fakes::AgentFunction called) {
    if (called != fakes::AgentFunction::CleanUpOnShutdown) return;
    EXPECT_FALSE(MarquineGlobals::sPluginServicesEnabled);
    EXPECT_EQ(state.sFontActivationTracker, nullptr);
    EXPECT_NE(state.sVPFInterface, nullptr);
    EXPECT_TRUE(state.sHostApp);
  };
  MarquineGlobals::CleanUpOnShutdown();
  EXPECT_EQ(agent.Count("CleanUpOnShutdown"), 1u);
  EXPECT_EQ(state.sVPFInterface, nullptr);
  EXPECT_FALSE(state.sHostApp);
}

TEST_F(Services, AHostIsKnownByTheBeginningOfItsName) {
  using MarquineGlobals::HostType;
  const struct {
    const char* name;
    HostType type;
    const char* category;
  } kRows[] = {{"PhotoshopCC2020", HostType::kPhotoshop, "ps"},
               {"IllustratorCC2019", HostType::kIllustrator, "ai"},
               {"InDesignCC", HostType::kInDesign, "id"},
               {"InCopyCC", HostType::kInCopy, "id"},
               {"AfterEffectsCC2019", HostType::kAfterEffects, "ae"},
               {"AECC", HostType::kUnknown, "ae"}};
  for (const auto& row : kRows) {
    MarquineGlobals::IdentifyPluginHostApp(String::FromUTF8(row.name));
    EXPECT_EQ(MarquineGlobals::GetHostTypeFromHostAppID(std::string("Photoshop")), row.type) << row.name;
    EXPECT_EQ(MarquineGlobals::GetHostAppCategory(), row.category) << row.name;
  }
  EXPECT_EQ(MarquineGlobals::MapBundleIDtoHostApp("com.velorant.AutoActivationPlugin.AE160"), "AfterEffectsCC2019");
  EXPECT_EQ(MarquineGlobals::MapBundleIDtoHostApp("com.velorant.AutoActivationPlugin.PS21"), "");
  EXPECT_TRUE(Traced("Unknown bundleID in MapBundleIDtoHostApp(com.velorant.AutoActivationPlugin.PS21)"));
}

TEST_F(Services, TheFileNameOfThePluginIsCutOutOfItsPath) {
  const struct {
    const char *path, *name;
  } kRows[] = {{"/app/Auto.so", "Auto"},       {"C:\\app\\Auto.8li", "Auto"},
               {"HD:Auto.plugin", "Auto"},     {"/app.d/a.b.so", "a.b"},
               {"/app.plugin/Auto", "app"},  // the last "." is in the folder's name
               {"Auto.plugin", "Auto.plugin"}, {"Auto", "Auto"}};
  for (const auto& row : kRows) {
    MarquineGlobals::IdentifyPluginBinaryPath(row.path);
    EXPECT_EQ(MarquineGlobals::GetPluginFileName(), row.name);
  }
}

class NotificationFixture : public HostFixture {
 protected:
  NotificationFixture() {
    MakeReady();
    host.TakeHeard();
  }
  // The host operations that one event of the agent causes.
  Lines Hear(int kind, void* data) {
    EXPECT_EQ(CoreAgentNotificationCallback(static_cast<PluginInterface::ECallbackKind>(kind), data), 0x15000000u);
    FontManagerInterface::sm_pFontManager->ProcessNotifications();
    return host.TakeHeard();
  }
  Lines HearLogin(bool isLoggedIn, int serverType) {
    platform::Dictionary data = platform::Dictionary::Create();
    data.Set("isLoggedIn", platform::Boolean::From(isLoggedIn));
    data.Set("serverType", platform::Number::FromInteger(serverType));
    return Hear(2, data.Ref());
  }
};
using Notification = NotificationFixture;

TEST_F(Notification, OfEachKindReachesTheHost) {
  int32_t on = 1, off = 0, font = 7, none = -1;
  platform::Dictionary data = platform::Dictionary::Create();
  data.Set("7", platform::Dictionary::Create());
  const struct {
    int kind;
    void* data;
    Lines heard;
  } kRows[] = {{1, &on, {"SetIsOnline 1"}},
               {1, &off, {"SetIsOnline 0"}},
               {3, nullptr, {"RebuildWorkgroupsMenu"}},
               {4, nullptr, {"RebuildWorkgroupsMenu"}},
               {8, &font, {"FontActivated 7"}},
               {8, &none, {}},
               {9, &font, {"FontDeactivated 7"}},
               {10, &font, {"FontMissing 7"}},
               {14, &on, {"GoogleWebFontsEnabled 1"}},
               {14, &off, {"GoogleWebFontsEnabled 0"}},
               {15, data.Ref(), {"GoogleReplicationProgress 2"}},
               {16, nullptr, {"GoogleReplicationStopped"}},
               {17, data.Ref(), {"PreviewPNGsRendered 1"}},
               {18, nullptr, {"SmartListsChanged"}},
               {19, data.Ref(), {"BulkReplicationProgress 2"}},
               {20, nullptr, {"BulkReplicationStopped"}},
               {21, data.Ref(), {"IncrementalReplicationProgress 2"}},
               {22, nullptr, {"IncrementalReplicationStopped"}},
               {23, nullptr, {"HandlePanelDataChanged"}},
               {24, &font, {"DesignActivationFailedComplianceCheck 7"}},
               {25, nullptr, {"OfflineDownloadFinished"}},
               {27, data.Ref(), {"FontServerReplicationProgress 2"}},
               {28, nullptr, {"FontServerReplicationStopped"}},
               {5, &font, {}},
               {6, &font, {}},
               {7, &font, {}},
               {11, &font, {}},
               {12, &font, {}},
               {13, &font, {}},
               {26, &font, {}},
               {29, &font, {}},
               {4711, &font, {}}};
  for (const auto& row : kRows) {
    Shown();
    EXPECT_EQ(Hear(row.kind, row.data), row.heard) << row.kind;
    const std::string online = row.kind != 1 ? "" : row.data == &on ? "online 1" : "online 0";
    EXPECT_EQ(Shown(), online) << row.kind << ": the command box shows it";
  }
}

TEST_F(Notification, OfAShutdownSwitchesOffForGood) {
  ui->onShown = [&] { EXPECT_FALSE(host.arePanelsEnabled); };
  Hear(0, nullptr);
  EXPECT_EQ(Shown(), "box FontManagerNotFoundMessage");
  EXPECT_FALSE(MarquineGlobals::ArePluginServicesEnabled());
  EXPECT_FALSE(MarquineGlobals::sConnectedToCore);
  HearLogin(true, 1);
  EXPECT_FALSE(MarquineGlobals::ArePluginServicesEnabled());
  HearLogin(false, 1);
  EXPECT_EQ(Shown(), "") << "services that are off need no box";
  EXPECT_FALSE(MarquineGlobals::sLoggedIn);
  CoreAgentPluginNotification orphan(nullptr);
  FontManagerInterface::ResetForTesting();
  EXPECT_EQ(orphan.Respond(), -1);
}

TEST_F(Notification, OfALoginTurnsServicesOffAndOnAgain) {
  EXPECT_EQ(HearLogin(false, 3), Lines{"SetLoggedInState 0 3"});
  EXPECT_TRUE(MarquineGlobals::ArePluginServicesEnabled()) << "a server that the plug-in has no dealings with";
  EXPECT_EQ(HearLogin(false, 1), Lines{"SetLoggedInState 0 1"});
  EXPECT_EQ(Shown(), "box NotLoggedInPluginDisabledMessage");
  EXPECT_FALSE(MarquineGlobals::ArePluginServicesEnabled());
  ui->preferences["CurrentWorkgroup"] = 0;
  EXPECT_EQ(HearLogin(true, 1), (Lines{"SetLoggedInState 1 1", "RebuildWorkgroupsMenu"}));
  EXPECT_NE(ui->preferences["CurrentWorkgroup"], 0) << "selected anew, for another user may have logged in";
  EXPECT_TRUE(MarquineGlobals::ArePluginServicesEnabled());
  EXPECT_TRUE(Traced("Re-enabling plugin functionality, now that the user has logged-in."));
}

TEST_F(Notification, OfWorkgroupsWaitsForAReplicationToStop) {
  FontManagerInterface::sValidWorkgroupSelected = false;
  ui->preferences["CurrentWorkgroup"] = 0;
  for (const auto& [progress, stopped] : {std::pair(19, 20), std::pair(21, 22)}) {
    FontManagerInterface::sValidWorkgroupSelected = false;
    Hear(progress, platform::Dictionary::Create().Ref());
    EXPECT_EQ(Hear(3, nullptr), Lines{"RebuildWorkgroupsMenu"});
    EXPECT_EQ(HearLogin(true, 1), Lines{"SetLoggedInState 1 1"});
    EXPECT_FALSE(FontManagerInterface::sValidWorkgroupSelected);
    Hear(stopped, nullptr);
    EXPECT_FALSE(MarquineGlobals::sBulkReplicationRunning || MarquineGlobals::sIncrementalReplicationRunning);
    EXPECT_TRUE(FontManagerInterface::sValidWorkgroupSelected);
  }
}

}  // namespace
