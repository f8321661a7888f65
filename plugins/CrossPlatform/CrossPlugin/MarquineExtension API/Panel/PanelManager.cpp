#include "Panel/PanelManager.h"

#include "FailedCheck.h"
#include "GSingleton.h"
#include "Services/DiagnosticLog.h"

MarquinePanel::~MarquinePanel() = default;
PanelManager::~PanelManager() = default;

PanelManager* PanelManager::GetSharedInstance() { return GSingleton<PanelManager>::GetSharedInstance(); }

TModuleErrorCode PanelManager::OpenSocket() {
  OutputIndentedAndFormattedString(0, "%s() called", __func__);
  return CoreErrorCodes::kNotImplemented;
}

TModuleErrorCode PanelManager::RegisterPlugPlug(SDKPlugPlug* plugPlug) {
  OutputIndentedAndFormattedString(0, "%s() called", __func__);
  RETURN_IF("Miscellaneous", (plugPlug) == nullptr, CoreErrorCodes::kNullPointer);
  return CoreErrorCodes::kNotImplemented;
}

unsigned int PanelManager::GetSocketPort() {
  OutputIndentedAndFormattedString(0, "%s() called", __func__);
  for (MarquinePanel* panel : mPanels) {
    if (const unsigned int port = panel->GetSocketPort()) return port;
  }
  return 0;
}

void PanelManager::CheckForTypekit() {
  for (MarquinePanel* panel : mPanels) panel->CheckForTypekit();
}

// Repeats a call on every panel; the first code other than 0 is reported and returned.
#define FAN_OUT(call)                                          \
  for (auto it = mPanels.begin(); it != mPanels.end(); ++it) { \
    RETURN_IF_ERROR("Miscellaneous", (*it)->call);             \
  }                                                            \
  return CoreErrorCodes::kSuccess

TModuleErrorCode PanelManager::SetEnabled(bool enabled) {
  OutputIndentedAndFormattedString(0, "%s(%d) called", __func__, enabled);
  FAN_OUT(SetEnabled(enabled));
}
TModuleErrorCode PanelManager::SelectSocket(bool closeListeningSocket) { FAN_OUT(SelectSocket(closeListeningSocket)); }
TModuleErrorCode PanelManager::PopNotifications() { FAN_OUT(PopNotifications()); }
TModuleErrorCode PanelManager::SendFontImages(const platform::Dictionary& fontPNGs) {
  FAN_OUT(SendFontImages(fontPNGs));
}
TModuleErrorCode PanelManager::PushLoggedInStateChangedNotification(EServerType serverType) {
  FAN_OUT(PushLoggedInStateChangedNotification(serverType));
}
TModuleErrorCode PanelManager::PushOnlineStateChangedNotification(bool isOnline) {
  FAN_OUT(PushOnlineStateChangedNotification(isOnline));
}
TModuleErrorCode PanelManager::PushGoogleWebFontsEnabledNotificaton(bool enabled) {
  FAN_OUT(PushGoogleWebFontsEnabledNotificaton(enabled));
}
TModuleErrorCode PanelManager::PushFontActivatedNotification(unsigned int fontID) {
  FAN_OUT(PushFontActivatedNotification(fontID));
}
TModuleErrorCode PanelManager::PushFontDeactivatedNotification(unsigned int fontID) {
  FAN_OUT(PushFontDeactivatedNotification(fontID));
}
TModuleErrorCode PanelManager::PushFontMissingNotification(unsigned int fontID) {
  FAN_OUT(PushFontMissingNotification(fontID));
}
TModuleErrorCode PanelManager::PushFontNonCompliantNotification(unsigned int fontID) {
  FAN_OUT(PushFontNonCompliantNotification(fontID));
}
TModuleErrorCode PanelManager::PushBulkReplicationProgressNotification(const platform::Dictionary& details) {
  FAN_OUT(PushBulkReplicationProgressNotification(details));
}
TModuleErrorCode PanelManager::PushBulkReplicationStoppedNotification() {
  FAN_OUT(PushBulkReplicationStoppedNotification());
}
TModuleErrorCode PanelManager::PushIncrementalReplicationProgressNotification(const platform::Dictionary& details) {
  FAN_OUT(PushIncrementalReplicationProgressNotification(details));
}
TModuleErrorCode PanelManager::PushIncrementalReplicationStoppedNotification() {
  FAN_OUT(PushIncrementalReplicationStoppedNotification());
}
TModuleErrorCode PanelManager::PushGoogleReplicationProgressNotification(const platform::Dictionary& details) {
  FAN_OUT(PushGoogleReplicationProgressNotification(details));
}
TModuleErrorCode PanelManager::PushGoogleReplicationStoppedNotification() {
  FAN_OUT(PushGoogleReplicationStoppedNotification());
}
TModuleErrorCode PanelManager::PushFontServerReplicationProgressNotification(const platform::Dictionary& details) {
  FAN_OUT(PushFontServerReplicationProgressNotification(details));
}
TModuleErrorCode PanelManager::PushFontServerReplicationStoppedNotification() {
  FAN_OUT(PushFontServerReplicationStoppedNotification());
}
TModuleErrorCode PanelManager::PushDataChangedNotification() { FAN_OUT(PushDataChangedNotification()); }
TModuleErrorCode PanelManager::PushSmartListsChangedNotification() { FAN_OUT(PushSmartListsChangedNotification()); }
TModuleErrorCode PanelManager::PushOfflineDownloadFinishedNotification() {
  FAN_OUT(PushOfflineDownloadFinishedNotification());
}
TModuleErrorCode PanelManager::PushTypekitEnabledNotification(bool enabled) {
  FAN_OUT(PushTypekitEnabledNotification(enabled));
}

#undef FAN_OUT
