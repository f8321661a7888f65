#include "photoshop/PhotoshopInterface.h"

#include "Documents/AllTrackedDocuments.h"
#include "Panel/PanelManager.h"
#include "photoshop/PhotoshopFontUtils.h"

namespace {

PanelManager& Panels() { return *PanelManager::GetSharedInstance(); }

OneTrackedDocument* CurrentDocument() {
  int id = 0;
  if (PSDocumentSuite::GetCurrentDocument(id) != host_sdk::kNoErr) return nullptr;
  return AllTrackedDocuments::FindTrackedDocumentByHandle(id);
}

}  // namespace

HostAppInterface* HostAppInterface::GetHostAppInterface() {
  if (!sm_pHostApp) sm_pHostApp = new PhotoshopInterface;
  return sm_pHostApp;
}

void PhotoshopInterface::RebuildWorkgroupsMenu() { Panels().CheckForTypekit(); }
void PhotoshopInterface::HandlePanelDataChanged() { Panels().PushDataChangedNotification(); }

void PhotoshopInterface::SetCanExportFontsForDocument(bool can) {
  if (OneTrackedDocument* document = CurrentDocument()) document->SetCanExportFontsForDocument(can);
}

bool PhotoshopInterface::CanExportFontsForDocument() {
  const OneTrackedDocument* document = CurrentDocument();
  return document && document->GetCanExportFontsForDocument();
}

void PhotoshopInterface::SetLoggedInState(bool, EServerType serverType) {
  Panels().PushLoggedInStateChangedNotification(serverType);
}
void PhotoshopInterface::SetIsOnline(bool isOnline) { Panels().PushOnlineStateChangedNotification(isOnline); }
void PhotoshopInterface::FontActivated(unsigned int fontID) { Panels().PushFontActivatedNotification(fontID); }
void PhotoshopInterface::DesignActivationFailedComplianceCheck(unsigned int fontID) {
  Panels().PushFontNonCompliantNotification(fontID);
}
void PhotoshopInterface::FontDeactivated(unsigned int fontID) { Panels().PushFontDeactivatedNotification(fontID); }
void PhotoshopInterface::FontMissing(unsigned int fontID) { Panels().PushFontMissingNotification(fontID); }
void PhotoshopInterface::BulkReplicationProgress(const platform::Dictionary& details) {
  Panels().PushBulkReplicationProgressNotification(details);
}
void PhotoshopInterface::BulkReplicationStopped() { Panels().PushBulkReplicationStoppedNotification(); }
void PhotoshopInterface::IncrementalReplicationProgress(const platform::Dictionary& details) {
  Panels().PushIncrementalReplicationProgressNotification(details);
}
void PhotoshopInterface::IncrementalReplicationStopped() { Panels().PushIncrementalReplicationStoppedNotification(); }
void PhotoshopInterface::GoogleReplicationProgress(const platform::Dictionary& details) {
  Panels().PushGoogleReplicationProgressNotification(details);
}
void PhotoshopInterface::GoogleReplicationStopped() { Panels().PushGoogleReplicationStoppedNotification(); }
void PhotoshopInterface::GoogleWebFontsEnabled(bool enabled) { Panels().PushGoogleWebFontsEnabledNotificaton(enabled); }
void PhotoshopInterface::FontServerReplicationProgress(const platform::Dictionary& details) {
  Panels().PushFontServerReplicationProgressNotification(details);
}
void PhotoshopInterface::FontServerReplicationStopped() { Panels().PushFontServerReplicationStoppedNotification(); }
void PhotoshopInterface::PreviewPNGsRendered(const platform::Dictionary& fontPNGs) {
  Panels().SendFontImages(fontPNGs);
}
void PhotoshopInterface::SmartListsChanged() { Panels().PushSmartListsChangedNotification(); }
void PhotoshopInterface::OfflineDownloadFinished() { Panels().PushOfflineDownloadFinishedNotification(); }
