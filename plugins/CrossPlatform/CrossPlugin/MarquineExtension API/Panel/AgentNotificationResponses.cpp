// What the agent's notifications do: change the plug-in's state, and pass the news on to host side and panels.
#include <algorithm>

#include "Bridge/CoreAgentInterface.h"
#include "Bridge/CoreAgentNotifications.h"
#include "Bridge/CoreAgentSupport.h"
#include "Bridge/FontDataPreviouslyGottenFromDatabase.h"
#include "Bridge/HostAppInterface.h"
#include "Bridge/NotificationKeys.h"
#include "Panel/PanelManager.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "platform/Clock.h"

using platform::Boolean;
using platform::Dictionary;

namespace {

HostAppInterface& Host() { return *HostAppInterface::GetHostAppInterface(); }

bool Has(const Dictionary& notification, std::string_view key) {
  return static_cast<bool>(Boolean(notification.Get(key)));
}

bool IsReplicationRunning() {
  return MarquineGlobals::sBulkReplicationRunning || MarquineGlobals::sIncrementalReplicationRunning;
}

void SwitchOff() {
  MarquineGlobals::SetPluginServicesEnabled(false);
  MarquineGlobals::SetConnectedToCore(false);
  PanelManager::GetSharedInstance()->SetEnabled(false);
}

}  // namespace

int16_t CoreAgentPluginNotification::Respond() {
  if (!FontManagerInterface::sm_pFontManager) return -1;
  if (RespondToStateChange() || RespondToFont() || RespondToReplication()) return 0;
  RespondToPanelEvent();
  return 0;
}

bool CoreAgentPluginNotification::RespondToStateChange() {
  if (Has(mDictionary, kPluginNotification_OnlineStateChanged)) {
    const bool isOnline = mDictionary.GetBoolean(kPluginNotification_OnlineStateChanged);
    OutputIndentedAndFormattedString(0, ">>> notification: Online state changed to '%s'", isOnline ? "true" : "false");
    Host().SetIsOnline(isOnline);
    MarquineGlobals::GetSharedVPFInterface()->SetIsOnline(isOnline);
  } else if (Has(mDictionary, kPluginNotification_LoggedInStateChanged)) {
    RespondToLoggedInState();
  } else if (Has(mDictionary, kPluginNotification_PanelDataChanged)) {
    OutputIndentedAndFormattedString(0, ">>> notification: Data changed");
    Host().HandlePanelDataChanged();
  } else if (Has(mDictionary, kPluginNotification_WorkgroupsChanged) ||
             Has(mDictionary, kPluginNotification_UserPermissionsChanged)) {
    OutputIndentedAndFormattedString(0, ">>> notification: Workgroups changed");
    Host().RebuildWorkgroupsMenu();
    if (!IsReplicationRunning() && !FontManagerInterface::sValidWorkgroupSelected) {
      FontManagerInterface::sm_pFontManager->InitializeDefaultWorkgroup();
      FontManagerInterface::CheckSelectWorkgroup();
    }
  } else if (Has(mDictionary, kPluginNotification_AgentShutdown)) {
    OutputIndentedAndFormattedString(0, ">>> notification: Agent shut down");
    OutputIndentedAndFormattedString(0, "Disabling plugin functionality");
    SwitchOff();
    if (const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface()) {
      OutputIndentedAndFormattedString(0, "Informing user that plugin functionality will be disabled...");
      ui->ShowFontManagerNotFoundMessageBox();
    }
  } else {
    return false;
  }
  return true;
}

bool CoreAgentPluginNotification::RespondToFont() {
  const bool activated = Has(mDictionary, kPluginNotification_FontActivated);
  const bool nonCompliant = Has(mDictionary, kPluginNotification_DesignActivationNonCompliant);
  const bool deactivated = Has(mDictionary, kPluginNotification_FontDeactivated);
  const bool missing = Has(mDictionary, kPluginNotification_FontMissing);
  if (!activated && !nonCompliant && !deactivated && !missing) return false;
  const int64_t id = mDictionary.GetInteger(kPluginNotification_FontActivation_Font_ID, -1);
  if (id < 0) return true;
  const auto fontID = static_cast<unsigned>(id);
  if (activated || nonCompliant) {
    OutputIndentedAndFormattedString(0, ">>> notification: font %d activated", fontID);
  } else {
    OutputIndentedAndFormattedString(0, ">>> notification: font %d deactivated", fontID);
  }
  if (activated) {
    Host().FontActivated(fontID);
    FontDataPreviouslyGottenFromDatabase::SetFontActivationState(fontID, true);
  } else if (nonCompliant) {
    Host().DesignActivationFailedComplianceCheck(fontID);
  } else if (deactivated) {
    Host().FontDeactivated(fontID);
    FontDataPreviouslyGottenFromDatabase::SetFontActivationState(fontID, false);
  } else {
    Host().FontMissing(fontID);
  }
  return true;
}

bool CoreAgentPluginNotification::RespondToReplication() {
  if (Has(mDictionary, kPluginNotification_BulkReplicationProgress)) {
    MarquineGlobals::SetBulkReplicationRunning(true);
    Host().BulkReplicationProgress(mDictionary);
  } else if (Has(mDictionary, kPluginNotification_BulkReplicationStopped)) {
    MarquineGlobals::SetBulkReplicationRunning(false);
    FontManagerInterface::CheckSelectWorkgroup();
    Host().BulkReplicationStopped();
  } else if (Has(mDictionary, kPluginNotification_IncrementalReplicationProgress)) {
    MarquineGlobals::SetIncrementalReplicationRunning(true);
    Host().IncrementalReplicationProgress(mDictionary);
  } else if (Has(mDictionary, kPluginNotification_IncrementalReplicationStopped)) {
    MarquineGlobals::SetIncrementalReplicationRunning(false);
    FontManagerInterface::CheckSelectWorkgroup();
    Host().IncrementalReplicationStopped();
  } else if (Has(mDictionary, kPluginNotification_GoogleReplicationProgress)) {
    Host().GoogleReplicationProgress(mDictionary);
  } else if (Has(mDictionary, kPluginNotification_GoogleReplicationStopped)) {
    Host().GoogleReplicationStopped();
  } else if (Has(mDictionary, kPluginNotification_FontServerReplicationProgress)) {
    Host().FontServerReplicationProgress(mDictionary);
  } else if (Has(mDictionary, kPluginNotification_FontServerReplicationStopped)) {
    Host().FontServerReplicationStopped();
  } else {
    return false;
  }
  return true;
}

bool CoreAgentPluginNotification::RespondToPanelEvent() {
  if (Has(mDictionary, kPluginNotification_GoogleWebFontsEnabled)) {
    if (Has(mDictionary, kPluginNotification_Enabled)) {
      Host().GoogleWebFontsEnabled(mDictionary.GetBoolean(kPluginNotification_Enabled));
    }
  } else if (Has(mDictionary, kPluginNotification_PreviewPNGsRendered)) {
    Host().PreviewPNGsRendered(mDictionary.GetDictionary(kPluginNotification_FontPNGs));
  } else if (Has(mDictionary, kPluginNotification_SmartListsChanged)) {
    Host().SmartListsChanged();
  } else if (Has(mDictionary, kPluginNotification_OfflineDownloadFinished)) {
    Host().OfflineDownloadFinished();
  } else {
    return false;
  }
  return true;
}

void CoreAgentPluginNotification::RespondToLoggedInState() {
  const bool loggedIn = mDictionary.GetBoolean(PluginInterface::kIsLoggedInKey, false);
  const auto serverType =
      static_cast<EServerType>(mDictionary.GetInteger(PluginInterface::kServerTypeKey, kServerTypeDefault));
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
