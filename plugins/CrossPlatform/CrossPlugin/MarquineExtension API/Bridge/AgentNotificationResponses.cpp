// Handles the agent's events: changes the plug-in's state and forwards the news to the host side. Operations of
// CoreAgentPluginNotification and CoreAgentInterface.
#include "Bridge/CoreAgentInterface.h"
#include "Bridge/CoreAgentNotifications.h"
#include "Bridge/CoreAgentSupport.h"
#include "Bridge/FontDataPreviouslyGottenFromDatabase.h"
#include "Bridge/HostAppInterface.h"
#include "Bridge/NotificationKeys.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "platform/Clock.h"

using platform::Boolean;
using platform::Dictionary;

namespace {

HostAppInterface& Host() { return *HostAppInterface::GetHostAppInterface(); }

bool IsReplicationRunning() {
  return MarquineGlobals::sBulkReplicationRunning || MarquineGlobals::sIncrementalReplicationRunning;
}

void SwitchOff() {
  MarquineGlobals::SetPluginServicesEnabled(false);
  MarquineGlobals::SetConnectedToCore(false);
  Host().SetPanelsEnabled(false);
}

void RespondToOnlineState(const Dictionary& event) {
  const bool isOnline = event.GetBoolean(kPluginNotification_OnlineStateChanged);
  OutputIndentedAndFormattedString(0, ">>> notification: Online state changed to '%s'", isOnline ? "true" : "false");
  Host().SetIsOnline(isOnline);
  MarquineGlobals::GetSharedVPFInterface()->SetIsOnline(isOnline);
}

void RespondToLoggedInState(const Dictionary& event) {
  const bool loggedIn = event.GetBoolean(PluginInterface::kIsLoggedInKey, false);
  const auto serverType =
      static_cast<EServerType>(event.GetInteger(PluginInterface::kServerTypeKey, kServerTypeDefault));
  OutputIndentedAndFormattedString(0, ">>> notification: Logged-in state changed to '%s'", loggedIn ? "true" : "false");
  Host().SetLoggedInState(loggedIn, serverType);
  if (serverType == kServerTypeIgnored) return;
  const bool wasLoggedIn = MarquineGlobals::sLoggedIn;
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!ui) return;
  if (wasLoggedIn && !loggedIn) {
    if (MarquineGlobals::ArePluginServicesEnabled()) {
      OutputIndentedAndFormattedString(0, "Disabling plugin functionality until the user logs back in");
      ui->ShowNotLoggedInMessageBox(false);
    } else {
      OutputIndentedAndFormattedString(0,
                                       "Plugin Services are already disabled. Logging back in will not-renable them");
    }
  }
  MarquineGlobals::SetLoggedIn(loggedIn);
  if (!wasLoggedIn) {
    OutputIndentedAndFormattedString(
        0, MarquineGlobals::ArePluginServicesEnabled()
               ? "Re-enabling plugin functionality, now that the user has logged-in."
               : "User logged in, but plugin functionality was disabled for non-login reasons.");
  }
  if (!loggedIn || IsReplicationRunning()) return;
  FontManagerInterface::sValidWorkgroupSelected = false;
  FontManagerInterface::CheckSelectWorkgroup();
  Host().RebuildWorkgroupsMenu();
}

void RespondToWorkgroups(const Dictionary&) {
  OutputIndentedAndFormattedString(0, ">>> notification: Workgroups changed");
  Host().RebuildWorkgroupsMenu();
  if (IsReplicationRunning() || FontManagerInterface::sValidWorkgroupSelected) return;
  FontManagerInterface::sm_pFontManager->InitializeDefaultWorkgroup();
  FontManagerInterface::CheckSelectWorkgroup();
}

void RespondToShutdown(const Dictionary&) {
  OutputIndentedAndFormattedString(0, ">>> notification: Agent shut down");
  OutputIndentedAndFormattedString(0, "Disabling plugin functionality");
  SwitchOff();
  if (const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface()) {
    OutputIndentedAndFormattedString(0, "Informing user that plugin functionality will be disabled...");
    ui->ShowFontManagerNotFoundMessageBox();
  }
}

// Font events. Does nothing without an ID. A missing font is traced as deactivated, a non-compliant one as activated.
template <class Tell>
void RespondToFont(const Dictionary& event, const char* trace, const Tell& tell) {
  const int64_t id = event.GetInteger(kPluginNotification_FontActivation_Font_ID, -1);
  if (id < 0) return;
  const auto fontID = static_cast<unsigned>(id);
  OutputIndentedAndFormattedString(0, trace, fontID);
  tell(fontID);
}

constexpr const char* kActivatedTrace = ">>> notification: font %d activated";
constexpr const char* kDeactivatedTrace = ">>> notification: font %d deactivated";

void RespondToActivated(const Dictionary& event) {
  RespondToFont(event, kActivatedTrace, [](unsigned fontID) {
    Host().FontActivated(fontID);
    FontDataPreviouslyGottenFromDatabase::SetFontActivationState(fontID, true);
  });
}

void RespondToDeactivated(const Dictionary& event) {
  RespondToFont(event, kDeactivatedTrace, [](unsigned fontID) {
    Host().FontDeactivated(fontID);
    FontDataPreviouslyGottenFromDatabase::SetFontActivationState(fontID, false);
  });
}

void RespondToNonCompliant(const Dictionary& event) {
  RespondToFont(event, kActivatedTrace, [](unsigned fontID) { Host().DesignActivationFailedComplianceCheck(fontID); });
}

void RespondToMissing(const Dictionary& event) {
  RespondToFont(event, kDeactivatedTrace, [](unsigned fontID) { Host().FontMissing(fontID); });
}

void RespondToBulkProgress(const Dictionary& event) {
  MarquineGlobals::SetBulkReplicationRunning(true);
  Host().BulkReplicationProgress(event);
}

void RespondToBulkStopped(const Dictionary&) {
  MarquineGlobals::SetBulkReplicationRunning(false);
  FontManagerInterface::CheckSelectWorkgroup();
  Host().BulkReplicationStopped();
}

void RespondToIncrementalProgress(const Dictionary& event) {
  MarquineGlobals::SetIncrementalReplicationRunning(true);
  Host().IncrementalReplicationProgress(event);
}

void RespondToIncrementalStopped(const Dictionary&) {
  MarquineGlobals::SetIncrementalReplicationRunning(false);
  FontManagerInterface::CheckSelectWorkgroup();
  Host().IncrementalReplicationStopped();
}

void RespondToWebFonts(const Dictionary& event) {
  const Boolean enabled(event.Get(kPluginNotification_Enabled));
  if (enabled) Host().GoogleWebFontsEnabled(enabled.IsTrue());
}

void RespondToPanelData(const Dictionary&) {
  OutputIndentedAndFormattedString(0, ">>> notification: Data changed");
  Host().HandlePanelDataChanged();
}

struct Response {
  std::string_view key;
  void (*respond)(const Dictionary& event);
};

// Searched in this order, because a payload may contain the key of another event.
constexpr Response kResponses[] = {
    {kPluginNotification_OnlineStateChanged, RespondToOnlineState},
    {kPluginNotification_LoggedInStateChanged, RespondToLoggedInState},
    {kPluginNotification_PanelDataChanged, RespondToPanelData},
    {kPluginNotification_WorkgroupsChanged, RespondToWorkgroups},
    {kPluginNotification_UserPermissionsChanged, RespondToWorkgroups},
    {kPluginNotification_AgentShutdown, RespondToShutdown},
    {kPluginNotification_FontActivated, RespondToActivated},
    {kPluginNotification_DesignActivationNonCompliant, RespondToNonCompliant},
    {kPluginNotification_FontDeactivated, RespondToDeactivated},
    {kPluginNotification_FontMissing, RespondToMissing},
    {kPluginNotification_BulkReplicationProgress, RespondToBulkProgress},
    {kPluginNotification_BulkReplicationStopped, RespondToBulkStopped},
    {kPluginNotification_IncrementalReplicationProgress, RespondToIncrementalProgress},
    {kPluginNotification_IncrementalReplicationStopped, RespondToIncrementalStopped},
    {kPluginNotification_GoogleReplicationProgress,
     [](const Dictionary& event) { Host().GoogleReplicationProgress(event); }},
    {kPluginNotification_GoogleReplicationStopped, [](const Dictionary&) { Host().GoogleReplicationStopped(); }},
    {kPluginNotification_FontServerReplicationProgress,
     [](const Dictionary& event) { Host().FontServerReplicationProgress(event); }},
    {kPluginNotification_FontServerReplicationStopped,
     [](const Dictionary&) { Host().FontServerReplicationStopped(); }},
    {kPluginNotification_GoogleWebFontsEnabled, RespondToWebFonts},
    {kPluginNotification_PreviewPNGsRendered,
     [](const Dictionary& event) { Host().PreviewPNGsRendered(event.GetDictionary(kPluginNotification_FontPNGs)); }},
    {kPluginNotification_SmartListsChanged, [](const Dictionary&) { Host().SmartListsChanged(); }},
    {kPluginNotification_OfflineDownloadFinished, [](const Dictionary&) { Host().OfflineDownloadFinished(); }},
};

}  // namespace

int16_t CoreAgentPluginNotification::Respond() {
  if (!FontManagerInterface::sm_pFontManager) return -1;
  for (const Response& response : kResponses) {
    if (!Boolean(mDictionary.Get(response.key))) continue;
    response.respond(mDictionary);
    break;
  }
  return 0;
}

int CoreAgentInterface::ProcessNotifications() {
  const int handled = mQueue.ProcessAllNotifications();
  LookForAgent();
  return handled;
}

void CoreAgentInterface::LookForAgent() {
  constexpr double kSecondsBetweenLooks = 6;
  constexpr int kMostTries = 3;
  const double now = platform::Clock::Steady();
  if (now - LastCoreAgentCheckTime() < kSecondsBetweenLooks || !MarquineGlobals::sConnectedToCore) return;
  int32_t isRunning = 0;
  TModuleErrorCode code = CoreErrorCodes::kUnknownError;
  for (int i = 0; i < kMostTries && code != CoreErrorCodes::kSuccess; ++i) {
    code = AgentTable().pfGetIsCoreAgentProcessRunning(GetFacade(), &isRunning);
  }
  if (code != CoreErrorCodes::kSuccess || !isRunning) {
    OutputIndentedAndFormattedString(0,
                                     "Disabling plug-in services in CoreAgentInterface::ProcessNotifications() because "
                                     "Nexcore is no longer running.");
    SwitchOff();
    AskUserToRelaunchAgent();
  }
  LastCoreAgentCheckTime() = now;
}
